#include "src/player/PlayParam.h"

#include "src/util/JsonUtil.h"

namespace quillmark::lumen_deck {

std::shared_ptr<JsonError> PlayParam::setTransParam(const QJsonObject& params)
{
    const auto [bitrateError, bitrate] = parseRequired<int>(params, "transBitrate");
    if (bitrateError)
        return bitrateError;
    const auto [resolutionError, resolution] = parseRequired<int>(params, "transResolution");
    if (resolutionError)
        return resolutionError;
    const auto [frameRateError, frameRate] = parseRequired<int>(params, "transFrameRate");
    if (frameRateError)
        return frameRateError;

    _TP_TRANSPARAM block{};
    block.bitrate = bitrate.toUInt();
    block.resolution = static_cast<unsigned char>(resolution.toUInt() & 0xFF);
    block.frameRate = frameRate.toUInt();
    block_ = block;
    return nullptr;
}

} // namespace quillmark::lumen_deck
