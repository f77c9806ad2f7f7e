#pragma once

#include "engine/present/FlatProjection.h"
#include "engine/present/View.h"
#include "engine/present/WarpProjection.h"

#include <deque>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace tide {

// All views of the process with their feeds, X windows and OpenGL objects. Everything here belongs to the render
// thread; the functions may be called from inside a draw hook, which runs on it.
class Stage
{
public:
    // Null when there is no X display.
    static std::unique_ptr<Stage> open();
    ~Stage();
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    int descriptor() const { return connection_->descriptor(); }

    bool add(int viewId, Window window, std::shared_ptr<PictureSource> source, std::shared_ptr<WarpSource> warp);
    void remove(int viewId);
    bool setHook(int viewId, DrawHook hook);
    bool setRegion(int viewId, std::optional<Region> region);
    void refresh(const std::vector<int>& viewIds);
    void windowChanged(Window window);
    PresenterStats stats(int viewId) const;

    void handleEvents();

    // Paints or swaps what was due first, one window at most, so that calls are answered between two windows.
    // Answers when there is something to do again; a time in the past is now.
    TimePoint work();

private:
    explicit Stage(std::unique_ptr<XConnection> connection);

    View* find(int viewId) const;
    std::shared_ptr<Channel> channelOf(std::shared_ptr<PictureSource> source) const;
    void bury();

    void handle(const XEvent& event);
    void readLook(View& view);
    void readAncestors(View& view);
    void resize(View& view, int width, int height);
    void lose(View& view);

    void tellWatched();
    TimePoint takeDue(TimePoint now);
    void take(Channel& channel, TimePoint due, TimePoint now);
    std::shared_ptr<View> longestWaiting() const;
    std::pair<std::shared_ptr<View>, TimePoint> nextStill() const;
    void draw(const std::shared_ptr<View>& view);
    void swapNext();
    void blank(View& view);
    bool paint(View& view, const Picture& picture);
    void runHook(View& view);

    std::unique_ptr<XConnection> connection_;
    GlxContexts contexts_;
    FlatProjection flat_;
    WarpProjection warp_;
    PackBuffer packBuffer_;
    std::vector<std::shared_ptr<View>> views_;
    // Let go as soon as no hook runs.
    std::vector<std::shared_ptr<View>> removed_;
    std::vector<std::unique_ptr<GlxSurface>> lostSurfaces_;
    std::deque<std::shared_ptr<View>> painted_; // wait to be swapped
    bool insideHook_ = false;
    TimePoint stillNotBefore_; // standing pictures get a part of the thread's time only
};

} // namespace tide
