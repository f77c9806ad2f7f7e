#pragma once

namespace quillmark::lumen_deck {

class IPlayer;

// Which player a play id belongs to: an id is known exactly while its player is not stopped.
// The player's parent, its window, stays the same for its life, so any thread may read it while the id is known.
void bindPlayId(int playId, IPlayer* player);
void releasePlayId(int playId);

// Lives while the engine is asked to begin a stream, until its id is bound. The first messages of a stream may come
// before: they are kept for so long, and sent from the event loop once the id is bound. Main thread.
class BeginningPlay
{
public:
    BeginningPlay();
    BeginningPlay(const BeginningPlay&) = delete;
    BeginningPlay& operator=(const BeginningPlay&) = delete;
    ~BeginningPlay();
};

// Sends a stream event to the host, on the caller's thread. False for an id that is not known any more. Any thread.
bool reportStreamEvent(int playId, unsigned eventType);

// Hands the engine the one handler of all its messages, once it has accepted it. Main thread.
void ensureMessageHandler();

} // namespace quillmark::lumen_deck
