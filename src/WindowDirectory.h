#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <unordered_map>

struct _TP_PTZPARAM;
class QWidget;

namespace quillmark::lumen_deck {

class IGraphicsView;

// The fisheye companion of a window: what it draws over a plain window's picture, behind the shapes, and the boxes that
// a device moves.
class IFisheyeOverlay {
public:
    virtual ~IFisheyeOverlay() = default;
    virtual void DrawFishEyeBox(void* drawContext) = 0;                                  // draw thread of the engine
    virtual void DrawFishWndId(void* drawContext) = 0;                                   // draw thread of the engine
    virtual void setFisheyeMark(int id, const _TP_PTZPARAM& position, bool visible) = 0; // any thread
};

// Which play windows there are, where they stand and who draws over them. The engine's threads may not walk the widget
// tree, so they ask here; the main thread keeps it true.
class WindowDirectory {
    struct Entry;

public:
    struct Place {
        QWidget* mainWidget = nullptr;
        int index = -1; // -1 for a parked window and for the hidden window of a fisheye stream
    };

    // Holds a window for the length of a draw hook: the window is not destroyed while a visit of it lives.
    class Visit {
    public:
        Visit(Visit&&) noexcept = default;
        Visit(const Visit&) = delete;
        Visit& operator=(Visit&&) = delete;
        Visit& operator=(const Visit&) = delete;
        ~Visit();
        explicit operator bool() const { return entry_ != nullptr; }
        IGraphicsView* view() const;
        IFisheyeOverlay* overlay() const; // null when there is none

    private:
        friend class WindowDirectory;
        Visit(WindowDirectory* directory, std::shared_ptr<Entry> entry);
        WindowDirectory* directory_;
        std::shared_ptr<Entry> entry_;
    };

    static WindowDirectory& instance();

    // Main thread. `window` is the play window.
    void add(const QWidget* window, IGraphicsView* view);
    void setOverlay(const QWidget* window, IFisheyeOverlay* overlay); // waits for running visits, as remove does
    void setPlace(const QWidget* window, Place place);
    void remove(const QWidget* window); // returns when no visit of the window is left; later ones find nothing

    // Any thread.
    Visit visit(const void* window);
    Visit visit(const Place& place); // of the window that stands there
    std::optional<Place> place(const void* window) const;

private:
    std::shared_ptr<Entry> find(const void* window) const; // with mutex_ held
    void waitUntilLeft(std::unique_lock<std::mutex>& lock, const Entry& entry);

    mutable std::mutex mutex_;
    std::condition_variable left_;
    std::unordered_map<const void*, std::shared_ptr<Entry>> entries_; // guarded by mutex_, the entries too
};

} // namespace quillmark::lumen_deck
