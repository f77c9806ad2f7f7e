#pragma once

#include "engine/core/Time.h"
#include "engine/stream/PictureSource.h"
#include "include/tide_pipe/tide_pipe.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace tide {

class WarpSource;

// A part of the picture in pixels of the picture; right and bottom are exclusive.
struct Region
{
    std::int64_t left = 0, top = 0, right = 0, bottom = 0;
};

// Called on the render thread with the window's context current; the presenter saves and restores the GL state round
// it. The argument is the opaque draw context that the hook receives.
using DrawHook = std::function<void(void* drawContext)>;

struct PresenterStats
{
    std::uint64_t shown = 0;   // swaps with a new picture
    std::uint64_t redrawn = 0; // swaps of a picture that was on show before
};

// Owns the X connection, the GLX context and the render thread, and draws every window of the process.
//
// A "view" is one window that shows one source. Several views may share a source: its picture is uploaded once.
// All functions may be called from any thread, draw hooks included; none of them calls back into the caller, and none
// waits for the network or for a decoder. The render thread answers them between two windows, so the caller holds no
// lock that a hook or a PictureSource takes.
//
// Pictures wait in their source, never here. A window that nobody can see is not drawn; its source goes on. A window
// with a hook is drawn some ten times a second while its picture stands.
class Presenter
{
public:
    Presenter();
    ~Presenter();
    Presenter(const Presenter&) = delete;
    Presenter& operator=(const Presenter&) = delete;

    // Starts to show `source` in `window`, bent by `warp` if there is one. False when there is no X display or the
    // window does not exist.
    bool add(int viewId, TP_WId window, std::shared_ptr<PictureSource> source,
             std::shared_ptr<WarpSource> warp = nullptr);

    // After it returns no hook of this view runs and the source is let go. Called from inside a hook it does not wait
    // for itself: the source is let go after the hook.
    void remove(int viewId);

    // An empty hook takes the present one off; after it returns the old one does not run any more (see remove).
    bool setHook(int viewId, DrawHook hook);

    // The part of the picture that fills the window; nullopt is the whole picture. Takes effect at once, also on a
    // standing picture. False for an unknown view.
    bool setRegion(int viewId, std::optional<Region> region);

    // Views whose warp has changed, also over a standing picture. Does not wait; unknown ones are ignored.
    void refresh(std::vector<int> viewIds);

    // The window's size has changed, as the host tells; unknown windows are ignored.
    void windowChanged(TP_WId window);

    // A source has a picture earlier than it said before, or a standing picture should be drawn again.
    void wake();

    PresenterStats stats(int viewId) const;

private:
    class Renderer;
    std::unique_ptr<Renderer> renderer_;
};

} // namespace tide
