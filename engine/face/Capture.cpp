#include "engine/core/Failure.h"
#include "include/tide_pipe/tide_pipe.h"

using tide::fail;
using tide::Failure;

int TP_JPEGCapture(int, const char*)
{
    return fail(Failure::NotSupported);
}

int TP_BMPCapture(int, const char*)
{
    return fail(Failure::NotSupported);
}

int TP_GetOSDTime(int, _TP_OSDTIME*)
{
    return fail(Failure::NotSupported);
}

int TP_StartSave(int, const char*, int)
{
    return fail(Failure::NotSupported);
}

int TP_StopSave(int)
{
    return fail(Failure::NotSupported);
}

int TP_SwitchFile(int, const char*)
{
    return fail(Failure::NotSupported);
}

int TP_GetRecordFileSize(int)
{
    return fail(Failure::NotSupported);
}
