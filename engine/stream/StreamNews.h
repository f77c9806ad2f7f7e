#pragma once

#include "engine/stream/StreamState.h"

#include <optional>

namespace tide {

// Turns what a stream's thread sees into messages for the host: each change of state is told once. Belongs to the
// stream's thread.
class StreamNews
{
public:
    explicit StreamNews(StreamState& state);

    void watch(bool on); // whether a picture that stands still is worth a message
    void tick(TimePoint now);

    void pictureCame(PictureSize size);
    void soundCame();                                // of a source without pictures
    void goesOn();                                   // of one whose pictures are not made, since nobody watches
    void delayed(Microseconds delay, TimePoint now); // of a live picture
    void openFailed();
    void refused();
    void lost();
    void ended();
    void tell(TP_Message what) const { state_.tell(what); }

private:
    void somethingCame();
    void fail(TP_Message what);

    StreamState& state_;
    bool watching_ = false;
    bool opened_ = false; // OPENED was told
    bool standing_ = false;
    std::optional<TP_Message> trouble_; // told, and not over yet
    TimePoint lastCame_ = Clock::now();
    Microseconds toldDelay_{};
    TimePoint delayToldAt_{};
};

} // namespace tide
