#include "engine/core/Failure.h"
#include "include/tide_pipe/tide_pipe.h"

using tide::fail;
using tide::Failure;

int TP_StartFishListener(const char*, const char*, const char*)
{
    return fail(Failure::NotSupported);
}

int TP_StopFishListener(int)
{
    return fail(Failure::NotSupported);
}

int TP_SetFishMsgCallBack(TP_FishMsgFun)
{
    return fail(Failure::NotSupported);
}
