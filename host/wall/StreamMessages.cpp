#include "host/wall/StreamMessages.h"

#include <algorithm>
#include <iterator>

namespace quillmark::lumen_wall {

namespace {

using Effect = StreamMessage::Effect;

constexpr int kDelay = 1000;
constexpr int kMostDelay = 1999;

constexpr StreamMessage table[] = {
    {1, Severity::Note, Effect::ClearsTrouble, "picture is there"},
    {2, Severity::Failure, Effect::IsTrouble, "cannot be opened"},
    {3, Severity::Failure, Effect::IsTrouble, "credential refused"},
    {4, Severity::Note, Effect::Ends, "end of stream"},
    {5, Severity::Warning, Effect::IsTrouble, "connection lost, trying again"},
    {6, Severity::Note, Effect::ClearsTrouble, "connection restored"},
    {7, Severity::Warning, Effect::IsTrouble, "picture stands still"},
    {8, Severity::Note, Effect::ClearsTrouble, "picture moves again"},
    {9, Severity::Note, Effect::None, "picture size changed"},
    {10, Severity::Failure, Effect::IsTrouble, "no decoder for this stream"},
    {11, Severity::Failure, Effect::IsTrouble, "cannot be played backwards"},
    {21, Severity::Failure, Effect::EndsRecording, "recording ended, the disk is nearly full"},
    {30, Severity::Failure, Effect::EndsRecording, "recording ended by the disk"},
};

} // namespace

std::optional<int> delayOf(int code)
{
    return code >= kDelay && code <= kMostDelay ? std::optional(code - kDelay) : std::nullopt;
}

StreamMessage streamMessage(int code)
{
    const auto found =
        std::find_if(std::begin(table), std::end(table), [=](const StreamMessage& row) { return row.code == code; });
    return found == std::end(table) ? StreamMessage{code, Severity::Note, Effect::None, "message %1"} : *found;
}

QString describe(int code)
{
    const QString text = streamMessage(code).text;
    return text.contains("%1") ? text.arg(code) : text;
}

} // namespace quillmark::lumen_wall
