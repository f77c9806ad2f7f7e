#pragma once

#include "engine/stream/Decoder.h"
#include "engine/stream/PictureQueue.h"

namespace tide {

// Decides how much of a stream is decoded: less when its pictures come late for a while, more when they are long in
// time.
class EffortControl
{
public:
    // The effort from now on. Leaving out all but key pictures is for fast play only.
    Decoder::Effort after(PictureQueue::Pushed pushed, double speed, TimePoint now);

private:
    Decoder::Effort effort_ = Decoder::Effort::All;
    PictureQueue::Pushed last_ = PictureQueue::Pushed::OnTime;
    TimePoint since_{}; // when the run of equal answers began
};

} // namespace tide
