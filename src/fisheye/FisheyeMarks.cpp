#include "src/fisheye/FisheyeMarks.h"

namespace quillmark::lumen_deck {

namespace {

constexpr int kTicksShown = 5;

}

// A copy of its own: a shared one is let go without the lock, and the next writer would not wait for that.
FisheyeMarks::Marks FisheyeMarks::all() const
{
    const std::lock_guard lock(mutex_);
    Marks copy = marks_;
    copy.detach();
    return copy;
}

void FisheyeMarks::put(int id, const FisheyeDeviceExpandMark& mark)
{
    const std::lock_guard lock(mutex_);
    marks_[id] = mark;
    markCountdown_ = kTicksShown;
}

bool FisheyeMarks::move(int id, const FisheyeDeviceExpandMark& mark)
{
    const std::lock_guard lock(mutex_);
    const auto found = marks_.find(id);
    if (found == marks_.end())
        return false;
    *found = mark;
    markCountdown_ = kTicksShown;
    return true;
}

void FisheyeMarks::clear()
{
    const std::lock_guard lock(mutex_);
    marks_.clear();
}

void FisheyeMarks::touch()
{
    const std::lock_guard lock(mutex_);
    markCountdown_ = kTicksShown;
}

void FisheyeMarks::tick()
{
    const std::lock_guard lock(mutex_);
    if (markCountdown_ > 0)
        --markCountdown_;
    if (markCountdown_ == 0)
        setVisible(false);
}

void FisheyeMarks::showAll()
{
    const std::lock_guard lock(mutex_);
    setVisible(true);
}

void FisheyeMarks::setVisible(bool visible)
{
    for (FisheyeDeviceExpandMark& mark : marks_)
        mark.visible = visible;
}

} // namespace quillmark::lumen_deck
