#pragma once

#include "engine/core/Ffmpeg.h"

namespace tide {

// The machine's video decoder, looked for once in a process: nothing is loaded where the device files are missing.
// TIDE_PIPE_HARDWARE=0 in the environment keeps to software. Null: decode in software. Borrowed.
AVBufferRef* hardwareDevice();

// Makes the decoder use the device for what it can decode. To be called before avcodec_open2.
void useHardware(AVCodecContext& codec, AVBufferRef& device);

// A picture in system memory: the same frame, or a copy of one that lies on the device. Null when the copy fails.
FramePtr toSystemMemory(FramePtr frame);

} // namespace tide
