#pragma once

#include "include/tide_pipe/tide_pipe.h"

#include <functional>
#include <string>
#include <vector>

// The engine double: the 67 functions of the stream engine, recorded and scripted. Every call is kept with its
// arguments as text; a function answers what the test has told it to, else a success: 0, or a fresh id where an id is
// asked for. It keeps the engine's word to its callers: once TP_Stop has returned, no draw hook of that id runs. Any
// thread may call.
namespace engine_double {

struct Call
{
    std::string name;
    std::vector<std::string> arguments; // numbers in decimal, text as it is, records as text, "null" or "pointer" else
};

void reset();              // no calls, no scripts, no streams; ids go on, the message handler stays
std::vector<Call> calls(); // all calls so far, in order
std::vector<Call> calls(const std::string& name);

// Scripts, in force until reset.
void answer(const std::string& name, int result);
void failCall(int nth); // the nth call from now fails with -1, TP_GetLastError not counted; 0 switches it off
void onCall(const std::string& name,
            std::function<void()> action);                       // runs first, on the caller's thread, without a lock
void give(const std::string& name, std::vector<double> numbers); // for the function's out parameters, in their order
void giveText(const std::string& name, std::string text);        // for the function's text buffer
inline void lastError(unsigned code)                             // what TP_GetLastError answers
{
    answer("TP_GetLastError", static_cast<int>(code));
}

// What the engine's own threads do; it happens on the caller's thread.
void emitMessage(int playId, unsigned message); // whether the id lives or not
bool drawFrame(int playId, void* drawContext);  // false when the stream or view does not live or has no draw hook
void emitFishMessage(void* data, unsigned length);
std::vector<int> livePlays(); // streams and views that have been started and not stopped

} // namespace engine_double
