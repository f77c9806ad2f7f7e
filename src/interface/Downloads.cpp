#include "src/interface/Export.h"
#include "src/interface/Services.h"

LUMEN_EXPORT_D(LD_StartUpgrade, onUpDownload<&UpDownload::StartUpgrade>)
LUMEN_EXPORT_D(LD_StopUpgrade, onUpDownload<&UpDownload::StopUpgrade>)
LUMEN_EXPORT_D(LD_UpgradeStatus, onUpDownload<&UpDownload::UpgradeStatus>)
LUMEN_EXPORT_D(LD_UpgradeProgress, onUpDownload<&UpDownload::UpgradeProgress>)
LUMEN_EXPORT_D(LD_StartDownload, onUpDownload<&UpDownload::StartDownload>)
LUMEN_EXPORT_D(LD_StopDownload, onUpDownload<&UpDownload::StopDownload>)
LUMEN_EXPORT_D(LD_GetDownloadProgress, onUpDownload<&UpDownload::GetDownloadProgress>)
LUMEN_EXPORT_D(LD_GetDownloadStatus, onUpDownload<&UpDownload::GetDownloadStatus>)
LUMEN_EXPORT_D(LD_GetDownloadInfo, onUpDownload<&UpDownload::GetDownloadInfo>)
