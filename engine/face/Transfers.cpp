#include "engine/core/Failure.h"
#include "include/tide_pipe/tide_pipe.h"

using tide::fail;
using tide::Failure;

int TP_StartAsynUpload(const char*, const char*, const char*, const char*, const char*, int)
{
    return fail(Failure::NotSupported);
}

int TP_StopAsynUpload(int)
{
    return fail(Failure::NotSupported);
}

int TP_GetUploadErrorInfo(int, char*)
{
    return fail(Failure::NotSupported);
}

int TP_GetIpcImportErrorInfo(char*)
{
    return fail(Failure::NotSupported);
}

int TP_GetHTTPErrorInfo(char*, int)
{
    return fail(Failure::NotSupported);
}

int TP_ImportDeviceConfig(const char*, const char*, const char*)
{
    return fail(Failure::NotSupported);
}

int TP_ExportDeviceConfig(const char*, const char*, const char*)
{
    return fail(Failure::NotSupported);
}

int TP_Upload(const char*, const char*, const char*, const char*, int)
{
    return fail(Failure::NotSupported);
}

int TP_StartDownload(const char*, const char*, const char*, const char*)
{
    return fail(Failure::NotSupported);
}

int TP_StartDownloadEx(const char*, const char*, const char*, int, const char*)
{
    return fail(Failure::NotSupported);
}

int TP_StopDownload(int)
{
    return fail(Failure::NotSupported);
}

int TP_GetDownloadStatus(int, int*, int*)
{
    return fail(Failure::NotSupported);
}

int TP_StartUpgrade(const char*, const char*, const char*, const char*, const char*, const char*)
{
    return fail(Failure::NotSupported);
}

int TP_StopUpgrade(int)
{
    return fail(Failure::NotSupported);
}

int TP_UpgradeStatus(int, int*, int*)
{
    return fail(Failure::NotSupported);
}
