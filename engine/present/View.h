#pragma once

#include "engine/present/FrameTexture.h"
#include "engine/present/GlxContexts.h"
#include "engine/present/Presenter.h"
#include "engine/present/fisheye/Warp.h"

#include <memory>
#include <optional>
#include <vector>

namespace tide {

// One stream as the presenter sees it: where its pictures come from and the planes that all its views draw.
struct Channel
{
    std::shared_ptr<PictureSource> source;
    FrameTexture texture;
    TimePoint lastTaken; // when it last gave a new picture
    bool watched = true; // as the source was told
};

// One window that shows a channel. Render thread only.
struct View
{
    int id = 0;
    Window window = kNoXid;
    std::vector<Window> ancestors;
    std::shared_ptr<Channel> channel;
    std::shared_ptr<WarpSource> warp;    // null: the picture is shown as it is
    std::unique_ptr<GlxSurface> surface; // null when the window has died
    std::optional<Region> region;
    std::shared_ptr<const DrawHook> hook;
    PresenterStats stats;

    int width = 0;
    int height = 0;
    bool viewable = false;
    bool obscured = false;
    bool lostContent = false; // was exposed or got another size since it was drawn

    std::optional<TimePoint> wanted; // since when it waits to be drawn
    std::optional<std::uint64_t> paintedSerial; // until it is swapped
    std::optional<std::uint64_t> drawnSerial;
    TimePoint lastDrawn;

    bool canBeSeen() const { return surface && viewable && !obscured && width > 0 && height > 0; }

    void loseContent(TimePoint since)
    {
        lostContent = true;
        want(since);
    }

    void want(TimePoint since)
    {
        if (!wanted)
            wanted = since;
    }
};

} // namespace tide
