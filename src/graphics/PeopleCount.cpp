#include "src/graphics/PeopleCount.h"

#include "include/tide_pipe/tide_pipe.h"
#include "src/graphics/GraphicsLine.h"

#include <cstdint>
#include <cstring>
#include <limits>
#include <map>
#include <mutex>

namespace quillmark::lumen_deck {
namespace {

constexpr int kPeopleCountType = 2049;

struct Registrations
{
    std::mutex mutex;
    std::map<std::pair<int, const void*>, std::weak_ptr<PeopleCounts>> counts; // guarded by mutex
};

// Never destroyed: the engine may still report while the process exits.
Registrations& registrations()
{
    static auto* const table = new Registrations;
    return *table;
}

std::shared_ptr<PeopleCounts> registered(int playId, const void* line)
{
    Registrations& table = registrations();
    const std::lock_guard lock(table.mutex);
    const auto found = table.counts.find({playId, line});
    return found != table.counts.end() ? found->second.lock() : nullptr;
}

} // namespace

PeopleCounts::PeopleCounts()
{
    for (auto& length : lengths_)
        length = std::numeric_limits<double>::quiet_NaN();
}

void PeopleCounts::store(const TP_ADDITION_DATA_INFO& info)
{
    std::array<std::uint32_t, kCount> thousandths;
    if (!info.data || info.length < static_cast<int>(sizeof thousandths))
        return;
    std::memcpy(thousandths.data(), info.data, sizeof thousandths);
    for (size_t i = 0; i < kCount; ++i) {
        const double length = thousandths[i] * 0.001;
        lengths_[i] = length > 1.0 || length < 0.01 ? -1.0 : length;
    }
}

PeopleCountRegistration::PeopleCountRegistration(int playId, const GraphicsLine* line,
                                                 const std::shared_ptr<PeopleCounts>& counts)
    : playId_(playId)
    , line_(line)
{
    Registrations& table = registrations();
    const std::lock_guard lock(table.mutex);
    table.counts[{playId_, line_}] = counts;
}

PeopleCountRegistration::~PeopleCountRegistration()
{
    Registrations& table = registrations();
    const std::lock_guard lock(table.mutex);
    table.counts.erase({playId_, line_});
}

void registerPeopleCount(int playId, GraphicsLine& line)
{
    line.registration.reset();
    line.registration = std::make_unique<PeopleCountRegistration>(playId, &line, line.pdcLengths);
    TP_RegAdditionFun(playId, kPeopleCountType, peopleCountDataCallback, &line);
}

void peopleCountDataCallback(int playId, TP_ADDITION_DATA_INFO* info, void* user)
{
    if (!info || info->type != kPeopleCountType)
        return;
    if (const auto counts = registered(playId, user))
        counts->store(*info);
}

} // namespace quillmark::lumen_deck
