#include "engine/face/WithStream.h"
#include "include/tide_pipe/tide_pipe.h"

using tide::Engine;
using tide::fail;
using tide::Failure;
using tide::Stream;
using tide::withStream;

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

int TP_StartVoiceTalk(const char*, const char*, const char*, const char*, int, int, int, int, int)
{
    return fail(Failure::NotSupported);
}

int TP_StopVoiceTalk(int)
{
    return fail(Failure::NotSupported);
}
