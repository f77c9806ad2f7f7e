#include "src/fisheye/FisheyeListener.h"

#include "include/tide_pipe/tide_pipe.h"
#include "src/WindowDirectory.h"

#include <QDebug>

#include <cstdint>
#include <cstring>
#include <mutex>
#include <optional>
#include <utility>

namespace quillmark::lumen_deck {

namespace {

using State = std::shared_ptr<FisheyeListenerState>;

struct Current
{
    std::mutex mutex;
    State g_currentMainWindow; // guarded by mutex
};

// Never destroyed: reports may come while the process exits.
Current& current()
{
    static auto* const instance = new Current;
    return *instance;
}

State currentMainWindow()
{
    const std::lock_guard lock(current().mutex);
    return current().g_currentMainWindow;
}

// How far the device's box numbers are ahead of ours; nothing where the mode has no boxes.
std::optional<int> boxOffset(int listenerMode)
{
    constexpr int offsets[] = {2, 1, 1};
    return listenerMode >= 0 && listenerMode <= 2 ? std::optional(offsets[listenerMode]) : std::nullopt;
}

void setFisheyeWindowMark(const FisheyeListenerState& state, int id, const _TP_PTZPARAM& position)
{
    const int index = state.originWindowIndex;
    if (index < 0)
        return;
    const WindowDirectory::Visit visit = WindowDirectory::instance().visit({state.mainWindow, index});
    if (visit && visit.overlay())
        visit.overlay()->setFisheyeMark(id, position, true);
}

void moveBox(const FisheyeListenerState& state, const _TP_FISHMESSAGE& message)
{
    constexpr int lastBox = 8;
    const std::optional<int> offset = boxOffset(state.listenerMode);
    if (!offset)
        return;
    const std::int64_t id = std::int64_t(message.box) - *offset;
    if (id < 1 || id > lastBox)
        return;
    _TP_PTZPARAM position;
    std::memcpy(&position, message.payload, sizeof position);
    setFisheyeWindowMark(state, static_cast<int>(id), position);
}

} // namespace

void setCurrentMainWindow(State state)
{
    const std::lock_guard lock(current().mutex);
    std::swap(current().g_currentMainWindow, state);
}

void fisheyeListenerCallback(int, int, void* data, unsigned length)
{
    const State state = currentMainWindow();
    if (!state) {
        qDebug("fatal error: cannot find main_window");
        return;
    }
    _TP_FISHMESSAGE message;
    if (!data || length != sizeof message)
        return;
    std::memcpy(&message, data, sizeof message);
    if (!message.payload)
        return;
    if (message.kind == TP_FISH_BOX && message.length == static_cast<int>(sizeof(_TP_PTZPARAM)))
        moveBox(*state, message);
    else if (message.kind == TP_FISH_MODE && message.length >= 1)
        state->listenerMode = *static_cast<const unsigned char*>(message.payload);
}

} // namespace quillmark::lumen_deck
