#include "engine/present/Stage.h"

#include "engine/present/HookScope.h"

#include <algorithm>
#include <chrono>
#include <tuple>
#include <utility>

namespace tide {

namespace {

using namespace std::chrono_literals;

// A picture stands when no new one came for this long; slow streams are not taken for standing ones.
constexpr auto kStandsAfter = 300ms;
// How often a standing picture is drawn, so that overlays over it are seen to change.
constexpr auto kStillInterval = 100ms;
// Of four parts of the thread's time, standing pictures get one at most.
constexpr int kStillPause = 3;
// When so many windows are due they are painted before the first of them is swapped: a swap waits for the driver's threads,
// which have the others to work on meanwhile.
constexpr std::size_t kPaintedAhead = 4;

bool concerns(const View& view, Window window)
{
    return view.window == window ||
           std::find(view.ancestors.begin(), view.ancestors.end(), window) != view.ancestors.end();
}

// The share of the picture's length that [from, to) covers; all of it when it lies outside.
std::pair<double, double> shareOf(std::int64_t from, std::int64_t to, int length)
{
    from = std::clamp<std::int64_t>(from, 0, length);
    to = std::clamp<std::int64_t>(to, 0, length);
    if (from >= to)
        return {0.0, 1.0};
    return {static_cast<double>(from) / length, static_cast<double>(to) / length};
}

Part partOf(const std::optional<Region>& region, int width, int height)
{
    if (!region)
        return {};
    const auto [left, right] = shareOf(region->left, region->right, width);
    const auto [top, bottom] = shareOf(region->top, region->bottom, height);
    return {left, top, right, bottom};
}

} // namespace

std::unique_ptr<Stage> Stage::open()
{
    std::unique_ptr<XConnection> connection = XConnection::open();
    return connection ? std::unique_ptr<Stage>(new Stage(std::move(connection))) : nullptr;
}

Stage::Stage(std::unique_ptr<XConnection> connection)
    : connection_(std::move(connection))
    , contexts_(*connection_)
{
}

Stage::~Stage()
{
    while (!views_.empty())
        remove(views_.back()->id);
    contexts_.park(); // the shaders go with the members
}

bool Stage::add(int viewId, Window window, std::shared_ptr<PictureSource> source, std::shared_ptr<WarpSource> warp)
{
    XConnection::guardErrors();
    if (find(viewId) != nullptr || !connection_->look(window))
        return false;
    auto view = std::make_shared<View>();
    view->id = viewId;
    view->window = window;
    view->channel = channelOf(std::move(source));
    view->warp = std::move(warp);
    connection_->watch(window);
    // Read after the events were asked for: no change is missed.
    const std::optional<WindowLook> look = connection_->look(window);
    if (look)
        view->surface = contexts_.surfaceFor(window, *look);
    if (!view->surface) {
        connection_->unwatch(window);
        return false;
    }
    readAncestors(*view);
    readLook(*view);
    if (view->warp && view->width > 0) // what is asked about the window before its first picture is answered right too
        view->warp->look({view->width, view->height, {}});
    view->want(Clock::now());
    views_.push_back(std::move(view));
    return true;
}

void Stage::remove(int viewId)
{
    const auto found =
        std::find_if(views_.begin(), views_.end(), [viewId](const auto& view) { return view->id == viewId; });
    if (found == views_.end())
        return;
    lose(**found);
    painted_.erase(std::remove(painted_.begin(), painted_.end(), *found), painted_.end());
    removed_.push_back(std::move(*found));
    views_.erase(found);
    bury();
}

bool Stage::setHook(int viewId, DrawHook hook)
{
    View* view = find(viewId);
    if (view == nullptr)
        return false;
    view->hook = hook ? std::make_shared<const DrawHook>(std::move(hook)) : nullptr;
    view->want(Clock::now());
    return true;
}

bool Stage::setRegion(int viewId, std::optional<Region> region)
{
    View* view = find(viewId);
    if (view == nullptr)
        return false;
    view->region = region;
    view->want(Clock::now());
    return true;
}

void Stage::refresh(const std::vector<int>& viewIds)
{
    for (const int viewId : viewIds) {
        if (View* view = find(viewId))
            view->want(Clock::now());
    }
}

void Stage::windowChanged(Window window)
{
    for (const auto& view : views_) {
        if (view->window == window)
            readLook(*view);
    }
}

PresenterStats Stage::stats(int viewId) const
{
    const View* view = find(viewId);
    return view == nullptr ? PresenterStats{} : view->stats;
}

View* Stage::find(int viewId) const
{
    for (const auto& view : views_) {
        if (view->id == viewId)
            return view.get();
    }
    return nullptr;
}

std::shared_ptr<Channel> Stage::channelOf(std::shared_ptr<PictureSource> source) const
{
    for (const auto& view : views_) {
        if (view->channel->source == source)
            return view->channel;
    }
    auto channel = std::make_shared<Channel>();
    channel->source = std::move(source);
    return channel;
}

// Surfaces and textures must not be current when they go.
void Stage::bury()
{
    if (insideHook_ || (removed_.empty() && lostSurfaces_.empty()))
        return;
    contexts_.park();
    removed_.clear();
    lostSurfaces_.clear();
}

void Stage::handleEvents()
{
    while (XPending(connection_->display()) > 0) {
        XEvent event;
        XNextEvent(connection_->display(), &event);
        handle(event);
    }
}

void Stage::handle(const XEvent& event)
{
    const Window window = event.xany.window;
    for (const auto& view : views_) {
        if (!view->surface || !concerns(*view, window))
            continue;
        const bool own = view->window == window;
        switch (event.type) {
        case ReparentNotify:
            readAncestors(*view);
            readLook(*view);
            break;
        case MapNotify:
        case UnmapNotify:
            readLook(*view);
            break;
        case DestroyNotify:
            if (own)
                lose(*view);
            break;
        case ConfigureNotify:
            if (own)
                resize(*view, event.xconfigure.width, event.xconfigure.height);
            break;
        case VisibilityNotify:
            if (own)
                view->obscured = event.xvisibility.state == VisibilityFullyObscured;
            break;
        case Expose:
            if (own && event.xexpose.count == 0)
                view->loseContent(Clock::now());
            break;
        default:
            break;
        }
    }
}

void Stage::readLook(View& view)
{
    const std::optional<WindowLook> look = connection_->look(view.window);
    if (!look)
        return lose(view);
    if (!std::exchange(view.viewable, look->viewable) && look->viewable)
        view.want(Clock::now());
    resize(view, look->width, look->height);
}

void Stage::readAncestors(View& view)
{
    const std::vector<Window> before = std::exchange(view.ancestors, connection_->ancestors(view.window));
    for (const Window ancestor : view.ancestors)
        connection_->watch(ancestor);
    for (const Window ancestor : before)
        connection_->unwatch(ancestor);
}

void Stage::resize(View& view, int width, int height)
{
    if (view.width == width && view.height == height)
        return;
    const bool isFirst = view.width == 0;
    view.width = width;
    view.height = height;
    if (isFirst)
        view.want(Clock::now());
    else
        view.loseContent(Clock::now());
}

// The window has died, or its view goes.
void Stage::lose(View& view)
{
    if (!view.surface)
        return;
    connection_->unwatch(view.window);
    for (const Window ancestor : std::exchange(view.ancestors, {}))
        connection_->unwatch(ancestor);
    lostSurfaces_.push_back(std::move(view.surface));
    bury();
}

TimePoint Stage::work()
{
    tellWatched();
    const TimePoint next = takeDue(Clock::now());
    const std::shared_ptr<View> waiting = painted_.size() < kPaintedAhead ? longestWaiting() : nullptr;
    if (waiting || !painted_.empty()) {
        waiting ? draw(waiting) : swapNext();
        return TimePoint::min();
    }
    const auto [still, due] = nextStill();
    const TimePoint start = Clock::now();
    if (!still || due > start)
        return std::min(next, due);
    draw(still);
    swapNext();
    const TimePoint end = Clock::now();
    stillNotBefore_ = end + kStillPause * (end - start);
    return TimePoint::min();
}

// A source is watched as long as one of its windows can be seen.
void Stage::tellWatched()
{
    for (const auto& view : views_) {
        Channel* const channel = view->channel.get();
        const bool watched = std::any_of(views_.begin(), views_.end(), [channel](const auto& other) {
            return other->channel.get() == channel && other->canBeSeen();
        });
        if (std::exchange(channel->watched, watched) != watched)
            channel->source->setWatched(watched);
    }
}

// Every channel gives its due picture even when nobody sees it: the stream goes on. Answers when the next one is due.
TimePoint Stage::takeDue(TimePoint now)
{
    TimePoint next = TimePoint::max();
    for (const auto& view : views_) {
        Channel& channel = *view->channel;
        const TimePoint due = channel.source->nextDue();
        if (due <= now)
            take(channel, due, now);
        next = std::min(next, channel.source->nextDue()); // a channel that nobody sees is not asked again by a drawing
    }
    return next;
}

void Stage::take(Channel& channel, TimePoint due, TimePoint now)
{
    if (!channel.source->take(now))
        return;
    channel.lastTaken = now;
    for (const auto& view : views_) {
        if (view->channel.get() == &channel)
            view->want(due);
    }
}

std::shared_ptr<View> Stage::longestWaiting() const
{
    std::shared_ptr<View> first;
    for (const auto& view : views_) {
        if (view->wanted && !view->paintedSerial && view->canBeSeen() && (!first || view->wanted < first->wanted))
            first = view;
    }
    return first;
}

// The view whose standing picture should be drawn again first, and when.
std::pair<std::shared_ptr<View>, TimePoint> Stage::nextStill() const
{
    std::pair<std::shared_ptr<View>, TimePoint> first{nullptr, TimePoint::max()};
    for (const auto& view : views_) {
        if (!view->hook || !view->drawnSerial || !view->canBeSeen())
            continue;
        const TimePoint due =
            std::max({view->lastDrawn + kStillInterval, view->channel->lastTaken + kStandsAfter, stillNotBefore_});
        if (!first.first || std::tie(due, view->lastDrawn) < std::tie(first.second, first.first->lastDrawn))
            first = {view, due};
    }
    return first;
}

void Stage::draw(const std::shared_ptr<View>& view)
{
    view->wanted.reset();
    view->lastDrawn = Clock::now();
    const bool lostContent = std::exchange(view->lostContent, false);
    const PicturePtr picture = view->channel->source->current();
    if (!picture && lostContent)
        blank(*view);
    if (!picture || !paint(*view, *picture))
        return;
    runHook(*view);
    if (view->surface) { // the hook has not ended the view
        view->paintedSerial = picture->serial;
        painted_.push_back(view);
    }
    bury();
}

void Stage::swapNext()
{
    if (painted_.empty())
        return;
    const std::shared_ptr<View> view = std::move(painted_.front());
    painted_.pop_front();
    if (view->surface)
        view->surface->swap();
    const bool isNew = view->drawnSerial != view->paintedSerial;
    ++(isNew ? view->stats.shown : view->stats.redrawn);
    view->drawnSerial = std::exchange(view->paintedSerial, std::nullopt);
}

// What stood there is left alone until the first picture, unless it was lost: nobody else paints the window now.
void Stage::blank(View& view)
{
    if (!view.surface->makeCurrent())
        return lose(view);
    glClearColor(0.0F, 0.0F, 0.0F, 1.0F);
    glClear(GL_COLOR_BUFFER_BIT);
    view.surface->swap();
}

bool Stage::paint(View& view, const Picture& picture)
{
    if (!view.surface->makeCurrent()) {
        lose(view);
        return false;
    }
    glViewport(0, 0, view.width, view.height);
    const FrameTexture& texture = view.channel->texture;
    if (!view.channel->texture.update(picture, packBuffer_))
        return false;
    const Part part = partOf(view.region, texture.width(), texture.height());
    if (view.warp)
        warp_.draw(texture, view.warp->look({view.width, view.height, part}), part);
    else
        flat_.draw(texture, part);
    return true;
}

void Stage::runHook(View& view)
{
    const std::shared_ptr<const DrawHook> hook = view.hook; // the hook may take itself off
    if (!hook)
        return;
    const HookScope scope;
    insideHook_ = true;
    (*hook)(view.surface->context());
    insideHook_ = false;
}

} // namespace tide
