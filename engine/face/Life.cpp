#include "engine/core/Failure.h"
#include "include/tide_pipe/tide_pipe.h"

using tide::fail;
using tide::Failure;

int TP_InitLib(const char*)
{
    return fail(Failure::NotSupported);
}

unsigned TP_GetLastError()
{
    return static_cast<unsigned>(tide::lastFailure());
}

int TP_SetMessageHandler(TP_MessageHandler, void*)
{
    return fail(Failure::NotSupported);
}

int TP_WndResolutionChange(TP_WId)
{
    return fail(Failure::NotSupported);
}
