#include "engine/core/Credential.h"
#include "engine/face/WithStream.h"
#include "engine/talk/Talks.h"
#include "include/tide_pipe/tide_pipe.h"

#include <string>

using tide::Engine;
using tide::fail;
using tide::Failure;
using tide::Stream;
using tide::withStream;

namespace {

std::string textOf(const char* text)
{
    return text ? text : "";
}

} // namespace

int TP_OpenSound(int playId)
{
    return withStream(playId, [](const Stream& stream) {
        return Engine::instance().mixer().open(stream.voice()) ? Failure::None : Failure::SoundFailed;
    });
}

int TP_CloseSound()
{
    Engine::instance().mixer().closeAll();
    return 0;
}

int TP_SetVolume(int playId, unsigned short volume)
{
    return withStream(playId, [volume](const Stream& stream) {
        stream.voice()->setVolume(volume);
        return Failure::None;
    });
}

int TP_GetVolume(int playId)
{
    const auto stream = Engine::instance().findStream(playId);
    return stream ? stream->voice()->volume() : fail(Failure::NoSuchId);
}

// The number of the device's channel stands in its addresses already.
int TP_StartVoiceTalk(const char* openUrl, const char* closeUrl, const char* dataUrl, const char* auth, int audioType,
                      int bitRate, int sampleRate, int soundChannel, int)
{
    const auto credential = tide::parseCredential(textOf(auth));
    const auto format = tide::makeTalkFormat(audioType, bitRate, sampleRate, soundChannel);
    if (!credential || !format)
        return fail(Failure::BadArgument);
    int talkId = -1;
    std::string text;
    const Failure failure = tide::Talks::instance().start(
        {textOf(openUrl), textOf(closeUrl), textOf(dataUrl), *credential, *format}, talkId, text);
    tide::setHttpErrorText(text);
    return failure == Failure::None ? talkId : fail(failure);
}

int TP_StopVoiceTalk(int talkId)
{
    return tide::Talks::instance().stop(talkId) ? 0 : fail(Failure::NoSuchId);
}
