#include "tests/double/EngineDouble.h"

#include "tests/double/Recorder.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <map>
#include <mutex>
#include <utility>

namespace engine_double {

namespace {

struct Script
{
    std::vector<Call> calls;
    std::map<std::string, int> answers;
    std::map<std::string, std::function<void()>> actions;
    std::map<std::string, std::vector<double>> numbers;
    std::map<std::string, std::string> texts;
    unsigned lastError = 0;
    int failIn = 0;
    int nextId = 100;
};

Script& script()
{
    static auto* const instance = new Script;
    return *instance;
}

std::mutex& scriptMutex() // never held while an action runs
{
    static auto* const instance = new std::mutex;
    return *instance;
}

template <class Use> auto withScript(Use use)
{
    const std::lock_guard lock(scriptMutex());
    return use(script());
}

template <class Value> Value lookUp(std::map<std::string, Value> Script::*table, const char* name)
{
    return withScript([&](Script& s) {
        const auto found = (s.*table).find(name);
        return found != (s.*table).end() ? found->second : Value();
    });
}

template <class Value> void tell(std::map<std::string, Value> Script::*table, const std::string& name, Value value)
{
    withScript([&](Script& s) { (s.*table)[name] = std::move(value); });
}

template <class Number> std::string joined(std::initializer_list<Number> numbers)
{
    std::string text;
    for (const Number number : numbers)
        text += (text.empty() ? "" : ",") + std::to_string(number);
    return text;
}

} // namespace

int answerCall(const char* name, std::vector<std::string> arguments, bool answersId)
{
    withScript([&](Script& s) { s.calls.push_back({name, std::move(arguments)}); });
    if (const auto action = lookUp(&Script::actions, name))
        action();
    return withScript([&](Script& s) {
        if (s.failIn > 0 && --s.failIn == 0)
            return -1;
        if (const auto told = s.answers.find(name); told != s.answers.end())
            return told->second;
        return answersId ? s.nextId++ : 0;
    });
}

unsigned scriptedError()
{
    return withScript([](Script& s) {
        s.calls.push_back({"TP_GetLastError", {}});
        return s.lastError;
    });
}

std::vector<double> given(const char* name)
{
    return lookUp(&Script::numbers, name);
}

void copyText(const char* name, char* buffer)
{
    const std::string text = lookUp(&Script::texts, name);
    if (!text.empty())
        std::memcpy(buffer, text.c_str(), text.size() + 1);
}

std::string bytesAsText(const void* record, std::size_t size)
{
    if (!record)
        return "null";
    const auto* bytes = static_cast<const unsigned char*>(record);
    std::string text;
    for (std::size_t i = 0; i < size; ++i) {
        text += "0123456789abcdef"[bytes[i] >> 4];
        text += "0123456789abcdef"[bytes[i] & 15];
    }
    return text;
}

std::string asText(const _TP_REGION* region)
{
    return region ? joined({region->left, region->top, region->right, region->bottom}) : "null";
}

std::string asText(const _TP_FISHEYEPARAM* p)
{
    if (!p)
        return "null";
    return "mask " + std::to_string(p->mask) + " at " + joined({p->x, p->y, p->z, p->angle}) + " color " +
           bytesAsText(p->color, sizeof p->color);
}

std::string asText(const _TP_PTZPARAM* point)
{
    return point ? joined({point->x, point->y}) : "null";
}

std::string asText(const _TP_SRTRANSFER* transfer)
{
    if (!transfer || !transfer->element)
        return "null";
    const _TP_SRTRANSFERELEMENT& e = *transfer->element;
    return joined({e.e0, e.e1, e.e2, e.e3});
}

void reset()
{
    closeAll();
    withScript([](Script& s) {
        const int nextId = s.nextId;
        s = Script();
        s.nextId = nextId;
    });
}

std::vector<Call> calls()
{
    return withScript([](const Script& s) { return s.calls; });
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
    tell(&Script::answers, name, result);
}

void onCall(const std::string& name, std::function<void()> action)
{
    tell(&Script::actions, name, std::move(action));
}

void give(const std::string& name, std::vector<double> numbers)
{
    tell(&Script::numbers, name, std::move(numbers));
}

void giveText(const std::string& name, std::string text)
{
    tell(&Script::texts, name, std::move(text));
}

void failCall(int nth)
{
    withScript([=](Script& s) { s.failIn = nth; });
}

void lastError(unsigned code)
{
    withScript([=](Script& s) { s.lastError = code; });
}

} // namespace engine_double
