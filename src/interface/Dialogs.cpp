#include "src/interface/Export.h"
#include "src/interface/Services.h"

LUMEN_EXPORT_D(LD_OpenFileBrowser, onLocalInfo<&LocalInfo::OpenFileBrowser>)
LUMEN_EXPORT_D(LD_OpenDirectory, onLocalInfo<&LocalInfo::OpenDirectory>)
LUMEN_EXPORT_D(LD_SetSecretKey, onLocalInfo<&LocalInfo::SetSecretKey>)
LUMEN_EXPORT_D(LD_SetOriginalString, onLocalInfo<&LocalInfo::SetOriginalString>)
LUMEN_EXPORT_D(LD_GetEncryptString, onLocalInfo<&LocalInfo::GetEncryptString>)
LUMEN_EXPORT_D(LD_GetDecryptString, onLocalInfo<&LocalInfo::GetDecryptString>)
