#pragma once

#include <array>
#include <atomic>
#include <memory>

struct TP_ADDITION_DATA_INFO;

namespace quillmark::lumen_deck {

class GraphicsLine;

// What people counting has measured along a line: sixteen lengths, the engine's thread writes, the draw thread reads.
class PeopleCounts
{
public:
    static constexpr size_t kCount = 16;

    PeopleCounts();
    double length(size_t index) const { return lengths_[index]; } // NaN before data came, -1.0 for none
    void store(const TP_ADDITION_DATA_INFO& info);                // what is too short is ignored

private:
    std::array<std::atomic<double>, kCount> lengths_;
};

// A line that the engine reports to. The engine keeps a bare pointer for as long as the stream plays; this tells
// whether there is still a line behind it. Ends with the line.
class PeopleCountRegistration
{
public:
    PeopleCountRegistration(int playId, const GraphicsLine* line, const std::shared_ptr<PeopleCounts>& counts);
    ~PeopleCountRegistration();
    PeopleCountRegistration(const PeopleCountRegistration&) = delete;
    PeopleCountRegistration& operator=(const PeopleCountRegistration&) = delete;

private:
    const int playId_;
    const void* const line_;
};

// Asks the engine to report to `line` for as long as both live.
void registerPeopleCount(int playId, GraphicsLine& line);

void peopleCountDataCallback(int playId, TP_ADDITION_DATA_INFO* info, void* user); // any thread of the engine

} // namespace quillmark::lumen_deck
