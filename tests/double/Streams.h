#pragma once

#include "include/tide_pipe/tide_pipe.h"

#include <functional>

// The streams and views that live, with the hooks that the library has registered.
namespace engine_double {

int opened(int playId, int parent = -1); // answers playId; -1 is no stream
int closed(int playId, int result);      // answers the result; a refused stop closes nothing
void setDrawHook(int playId, std::function<void(void* drawContext)> hook);
void setMessageHandler(TP_MessageHandler handler, void* user);
void setFishMessageHandler(TP_FishMsgFun handler);
void closeAll();

} // namespace engine_double
