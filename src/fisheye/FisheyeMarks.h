#pragma once

#include <QMap>

#include <mutex>

namespace quillmark::lumen_deck {

struct FisheyeDeviceExpandMark
{
    float x = 0.0F; // 0 to 1 of the window
    float y = 0.0F;
    bool visible = false;
};

// The boxes of a round picture that a device expands, by id, and how long they are still shown. Drawn by the engine's
// draw thread, moved by its listener thread and by the mouse. Any thread.
class FisheyeMarks
{
public:
    using Marks = QMap<int, FisheyeDeviceExpandMark>;

    Marks all() const;
    bool empty() const { return all().isEmpty(); }

    void put(int id, const FisheyeDeviceExpandMark& mark);  // shows for five ticks from now on
    bool move(int id, const FisheyeDeviceExpandMark& mark); // likewise; false for an id that is not there
    void clear();

    void touch();   // five ticks more
    void tick();    // a second has passed: hides all when the time is over
    void showAll(); // without more time

private:
    void setVisible(bool visible); // with mutex_ held

    mutable std::mutex mutex_;
    Marks marks_;           // guarded by mutex_
    int markCountdown_ = 0; // guarded by mutex_
};

} // namespace quillmark::lumen_deck
