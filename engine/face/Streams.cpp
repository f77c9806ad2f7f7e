#include "engine/core/Failure.h"
#include "include/tide_pipe/tide_pipe.h"

using tide::fail;
using tide::Failure;

int TP_SetDisplayBuf(int)
{
    return fail(Failure::NotSupported);
}

int TP_Play(const char*, const char*, int, TP_WId, const char*, const char*, int, const void*, const void*, int)
{
    return fail(Failure::NotSupported);
}

int TP_ReversePlay(const char*, const char*, int, TP_WId, const char*, const char*)
{
    return fail(Failure::NotSupported);
}

int TP_Stop(int)
{
    return fail(Failure::NotSupported);
}

int TP_Pause(int)
{
    return fail(Failure::NotSupported);
}

int TP_Resume(int)
{
    return fail(Failure::NotSupported);
}

int TP_Fast(int)
{
    return fail(Failure::NotSupported);
}

int TP_Slow(int)
{
    return fail(Failure::NotSupported);
}

int TP_FrameForward(int)
{
    return fail(Failure::NotSupported);
}

float TP_GetScale(int)
{
    fail(Failure::NotSupported);
    return 0.0F;
}

int TP_GetPictureSize(int, int*, int*)
{
    return fail(Failure::NotSupported);
}

int TP_SetReconnectInfo(int, const char*)
{
    return fail(Failure::NotSupported);
}

int TP_SetDisplayRegion(int, int, const _TP_REGION*, TP_WId, int)
{
    return fail(Failure::NotSupported);
}

int TP_RigisterDrawFun(int, TP_DrawFun, void*)
{
    return fail(Failure::NotSupported);
}

int TP_EnableIVS(int, int, int)
{
    return fail(Failure::NotSupported);
}

int TP_RenderPrivateDataEx(int, int, int, int)
{
    return fail(Failure::NotSupported);
}

int TP_SetOverlayPriInfoFlag(int, int, int)
{
    return fail(Failure::NotSupported);
}

int TP_RegAdditionFun(int, int, TP_AdditionFun, void*)
{
    return fail(Failure::NotSupported);
}
