#pragma once

namespace quillmark::lumen_deck {

class IPlayer;

// Which player a play id belongs to: an id is known exactly while its player is not stopped.
// The player's parent, its window, stays the same for its life, so any thread may read it while the id is known.
void bindPlayId(int playId, IPlayer* player);
void releasePlayId(int playId);

// Sends a stream event to the host, on the caller's thread. False for an id that is not known any more. Any thread.
bool reportStreamEvent(int playId, unsigned eventType);

// Hands the engine the one handler of all its messages, once it has accepted it. Main thread.
void ensureMessageHandler();

} // namespace quillmark::lumen_deck
