#pragma once

#include "engine/core/Ffmpeg.h"
#include "engine/talk/TalkFormat.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tide {

// Samples to the bytes that go to the device: plain G.711, or AAC with ADTS headers. Used by one thread.
class TalkEncoder
{
public:
    virtual ~TalkEncoder() = default;
    virtual SoundFormat format() const = 0; // that the samples must have
    virtual std::string encode(const std::vector<std::int16_t>& samples) = 0;
};

std::unique_ptr<TalkEncoder> makeTalkEncoder(const TalkFormat& format); // null without the codec

// The bytes that come back, cut anywhere, to frames. Used by one thread.
class TalkDecoder
{
public:
    using Output = std::function<void(const AVFrame& frame)>;

    static std::unique_ptr<TalkDecoder> make(const TalkFormat& format); // null without the codec

    void decode(std::string_view bytes, const Output& output);

private:
    struct ParserDeleter
    {
        void operator()(AVCodecParserContext* parser) const { av_parser_close(parser); }
    };

    TalkDecoder() = default;
    void parse(std::string_view bytes, const Output& output);
    void send(const std::uint8_t* data, std::size_t size, const Output& output);

    CodecPtr codec_;
    std::unique_ptr<AVCodecParserContext, ParserDeleter> parser_; // none for G.711
    std::string rest_;                                            // less than a sample of all channels
};

} // namespace tide
