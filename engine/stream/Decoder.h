#pragma once

#include "engine/core/Ffmpeg.h"

#include <memory>

namespace tide {

// One track's decoder, on one thread. Belongs to the stream's thread.
class Decoder
{
public:
    enum class Effort
    {
        All,
        NoSpare,
        KeysOnly
    }; // which pictures are decoded: NoSpare leaves out what no other needs

    static std::unique_ptr<Decoder> open(const AVCodecParameters& parameters, AVRational timeBase);

    void send(const AVPacket* packet); // null: no more comes; damaged packets are passed over
    FramePtr receive();                // in system memory; null when it needs more packets
    void flush();                      // after a seek
    void setEffort(Effort effort);

private:
    explicit Decoder(CodecPtr codec);

    CodecPtr codec_;
};

} // namespace tide
