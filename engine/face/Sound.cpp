#include "engine/core/Failure.h"
#include "include/tide_pipe/tide_pipe.h"

using tide::fail;
using tide::Failure;

int TP_OpenSound(int)
{
    return fail(Failure::NotSupported);
}

int TP_CloseSound()
{
    return fail(Failure::NotSupported);
}

int TP_SetVolume(int, unsigned short)
{
    return fail(Failure::NotSupported);
}

int TP_GetVolume(int)
{
    return fail(Failure::NotSupported);
}

int TP_StartVoiceTalk(const char*, const char*, const char*, const char*, int, int, int, int, int)
{
    return fail(Failure::NotSupported);
}

int TP_StopVoiceTalk(int)
{
    return fail(Failure::NotSupported);
}
