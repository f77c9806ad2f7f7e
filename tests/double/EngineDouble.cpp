#include "tests/double/EngineDouble.h"

#include "tests/double/Recorder.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <mutex>
#include <utility>

namespace engine_double {

namespace {

struct Script {
    std::mutex mutex;
    std::vector<Call> calls;
    std::map<std::string, int> answers;
    int failIn = 0;
    int nextId = 100;
};

Script& script()
{
    static Script instance;
    return instance;
}

} // namespace

int answerCall(const char* name, std::vector<std::string> arguments, bool answersId)
{
    Script& s = script();
    const std::lock_guard lock(s.mutex);
    s.calls.push_back({name, std::move(arguments)});
    if (s.failIn > 0 && --s.failIn == 0)
        return -1;
    if (const auto told = s.answers.find(name); told != s.answers.end())
        return told->second;
    return answersId ? s.nextId++ : 0;
}

void reset()
{
    Script& s = script();
    const std::lock_guard lock(s.mutex);
    s.calls.clear();
    s.answers.clear();
    s.failIn = 0;
}

std::vector<Call> calls()
{
    Script& s = script();
    const std::lock_guard lock(s.mutex);
    return s.calls;
}

std::vector<Call> calls(const std::string& name)
{
    std::vector<Call> found;
    const std::vector<Call> all = calls();
    std::copy_if(all.begin(), all.end(), std::back_inserter(found), [&](const Call& c) { return c.name == name; });
    return found;
}

void answer(const std::string& name, int result)
{
    Script& s = script();
    const std::lock_guard lock(s.mutex);
    s.answers[name] = result;
}

void failCall(int nth)
{
    Script& s = script();
    const std::lock_guard lock(s.mutex);
    s.failIn = nth;
}

} // namespace engine_double
