#pragma once

#include <atomic>
#include <memory>

class QWidget;

// The way of a device's report from the engine's listener thread to the boxes of the origin window.
namespace quillmark::lumen_deck {

// What the listener thread may know of a fisheye module. It may outlive the module by a report.
struct FisheyeListenerState
{
    explicit FisheyeListenerState(QWidget* main)
        : mainWindow(main)
    {
    }

    QWidget* const mainWindow; // to find windows by; never called
    std::atomic<int> listenerMode{0};
    std::atomic<int> originWindowIndex{-1};
};

// Where reports go from now on; null for nowhere. Any thread.
void setCurrentMainWindow(std::shared_ptr<FisheyeListenerState> state);

// The engine's callback.
void fisheyeListenerCallback(int, int, void* data, unsigned length);

} // namespace quillmark::lumen_deck
