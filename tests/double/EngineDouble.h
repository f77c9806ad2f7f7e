#pragma once

#include "include/tide_pipe/tide_pipe.h"

#include <string>
#include <vector>

// The engine double: the 67 functions of the stream engine, recorded and scripted. Every call is kept with its arguments
// as text; a function answers what the test has told it to, else a success: 0, or a fresh id where an id is asked for.
// Any thread may call.
namespace engine_double {

struct Call {
    std::string name;
    std::vector<std::string> arguments; // numbers in decimal, text as it is, "null" or "pointer" for the rest
};

void reset();                                      // no calls, no scripts; ids go on
std::vector<Call> calls();                         // all calls so far, in order
std::vector<Call> calls(const std::string& name);
void answer(const std::string& name, int result);  // from now on, until reset
void failCall(int nth);                            // the nth call from now fails with -1; 0 switches it off

} // namespace engine_double
