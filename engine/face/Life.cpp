#include "engine/core/Engine.h"
#include "engine/core/Failure.h"
#include "include/tide_pipe/tide_pipe.h"

using tide::Engine;

int TP_InitLib(const char*)
{
    Engine::instance();
    return 0;
}

unsigned TP_GetLastError()
{
    return static_cast<unsigned>(tide::lastFailure());
}

int TP_SetMessageHandler(TP_MessageHandler handler, void* user)
{
    Engine::instance().notifier().setHandler(handler, user);
    return 0;
}

int TP_WndResolutionChange(TP_WId window)
{
    Engine::instance().presenter().windowChanged(window);
    return 0;
}
