#include "src/interface/Export.h"
#include "src/interface/Services.h"

LUMEN_EXPORT_D(LD_StartAsynUpload, onUpDownload<&UpDownload::StartAsynUpload>)
LUMEN_EXPORT_D(LD_StopAsynUpload, onUpDownload<&UpDownload::StopAsynUpload>)
LUMEN_EXPORT_D(LD_ImportDeviceConfig, onUpDownload<&UpDownload::ImportDeviceConfig>)
LUMEN_EXPORT_D(LD_ExportDeviceConfig, onUpDownload<&UpDownload::ExportDeviceConfig>)
LUMEN_EXPORT_D(LD_ExportDeviceLog, onUpDownload<&UpDownload::ExportDeviceLog>)
LUMEN_EXPORT_D(LD_UploadFile, onUpDownload<&UpDownload::UploadFile>)
LUMEN_EXPORT_D(LD_Download, onUpDownload<&UpDownload::Download>)
LUMEN_EXPORT_D(LD_GetUploadErrorInfo, onUpDownload<&UpDownload::GetUploadErrorInfo>)
LUMEN_EXPORT_D(LD_GetIpcImportErrorInfo, onUpDownload<&UpDownload::GetIpcImportErrorInfo>)
