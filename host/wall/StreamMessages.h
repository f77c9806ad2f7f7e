#pragma once

#include <QString>

#include <optional>

// What the codes in stream events mean to a person and to a cell.
namespace quillmark::lumen_wall {

enum class Severity
{
    Note,
    Warning,
    Failure
};

struct StreamMessage
{
    enum class Effect
    {
        None,
        ClearsTrouble,
        IsTrouble,
        Ends,
        EndsRecording
    };

    int code;
    Severity severity;
    Effect effect;
    const char* text;
};

// The delay that a code tells, in tenths of a second.
std::optional<int> delayOf(int code);

// A code that nobody knows gives a message that names it in describe().
StreamMessage streamMessage(int code);
QString describe(int code);

} // namespace quillmark::lumen_wall
