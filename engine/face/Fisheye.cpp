#include "engine/core/Failure.h"
#include "include/tide_pipe/tide_pipe.h"

using tide::fail;
using tide::Failure;

int TP_FEC_Play(int, TP_WId, const _TP_FISHEYEPARAM*, int, int)
{
    return fail(Failure::NotSupported);
}

int TP_FECRigisterDrawFun(int, int, TP_FECDrawFun, void*)
{
    return fail(Failure::NotSupported);
}

int TP_FEC_GetParam(int, int, _TP_FISHEYEPARAM*)
{
    return fail(Failure::NotSupported);
}

int TP_FEC_UpDateParam(int, int, const _TP_FISHEYEPARAM*)
{
    return fail(Failure::NotSupported);
}

int TP_FEC_SetDrawType(int, int)
{
    return fail(Failure::NotSupported);
}

int TP_FEC_SetFinshDraw(int, int)
{
    return fail(Failure::NotSupported);
}

int TP_FEC_IsInFinshDraw(int, int*, float, float)
{
    return fail(Failure::NotSupported);
}

int TP_FEC_PTZ2WindowEx(int, int, int, const _TP_PTZPARAM*, const _TP_PTZPARAM*, const _TP_PTZPARAM*, float*, float*)
{
    return fail(Failure::NotSupported);
}

int TP_FEC_TestScan(int, int, float*, float*, int, float)
{
    return fail(Failure::NotSupported);
}

int TP_FEC_CapturePIC(int, int, int, const char*)
{
    return fail(Failure::NotSupported);
}

int TP_SR_Rotate(int, const _TP_SRTRANSFER*)
{
    return fail(Failure::NotSupported);
}
