#include "engine/core/Credential.h"
#include "engine/core/Failure.h"
#include "engine/listen/FishListeners.h"
#include "include/tide_pipe/tide_pipe.h"

#include <string>

using tide::fail;
using tide::Failure;
using tide::FishListeners;

namespace {

std::string textOf(const char* text)
{
    return text ? text : "";
}

} // namespace

int TP_StartFishListener(const char* url, const char* auth, const char* extData)
{
    const auto credential = tide::parseCredential(textOf(auth));
    if (!credential)
        return fail(Failure::BadArgument);
    int id = -1;
    const Failure failure = FishListeners::instance().start({textOf(url), *credential, textOf(extData)}, id);
    return failure == Failure::None ? id : fail(failure);
}

int TP_StopFishListener(int listenerId)
{
    return FishListeners::instance().stop(listenerId) ? 0 : fail(Failure::NoSuchId);
}

int TP_SetFishMsgCallBack(TP_FishMsgFun fn)
{
    FishListeners::instance().setFunction(fn);
    return 0;
}
