#include "engine/present/fisheye/FisheyeViews.h"

#include <algorithm>
#include <limits>

namespace tide {

namespace {

constexpr float kThinLine = 2.0F;
constexpr float kWideLine = 3.0F;
constexpr float kStronger = 2.0F; // how much wider the line of the view is that is worked with
constexpr std::array<unsigned char, 4> kNoColourSet{255, 255, 255, 255};

// A host steps a view by a tiny move along one axis that begins in the very middle. No pointer moves like that.
constexpr double kMostOfAStep = 0.003 + 1e-6;

bool isStep(Point from, Point to)
{
    const double x = std::abs(to.x - from.x);
    const double y = std::abs(to.y - from.y);
    return from.x == 0.5 && from.y == 0.5 && (x == 0.0 || y == 0.0) && x + y <= kMostOfAStep;
}

double fromMiddle(Point at)
{
    return std::max(std::abs(at.x - 0.5), std::abs(at.y - 0.5));
}

} // namespace

class FisheyeViews::Source : public WarpSource
{
public:
    Source(std::shared_ptr<FisheyeViews> views, int viewId)
        : views_(std::move(views))
        , viewId_(viewId)
    {
    }

    Look look(const WindowShape& shape) override { return views_->look(viewId_, shape); }

private:
    const std::shared_ptr<FisheyeViews> views_;
    const int viewId_;
};

std::shared_ptr<WarpSource> FisheyeViews::add(int viewId, PlaceType place, CorrectType correct, const ViewParam& param)
{
    const std::lock_guard lock(mutex_);
    views_.insert_or_assign(viewId, View{place, correct, param, {}, std::nullopt, 1});
    return std::make_shared<Source>(shared_from_this(), viewId);
}

void FisheyeViews::remove(int viewId)
{
    const std::lock_guard lock(mutex_);
    views_.erase(viewId);
}

const FisheyeViews::View* FisheyeViews::find(int viewId) const
{
    const auto found = views_.find(viewId);
    return found == views_.end() ? nullptr : &found->second;
}

FisheyeViews::View* FisheyeViews::find(int viewId)
{
    return const_cast<View*>(std::as_const(*this).find(viewId));
}

std::optional<ViewParam> FisheyeViews::param(int viewId) const
{
    const std::lock_guard lock(mutex_);
    const View* view = find(viewId);
    return view ? std::optional(view->param) : std::nullopt;
}

Failure FisheyeViews::update(int viewId, const Change& change)
{
    const std::lock_guard lock(mutex_);
    View* view = find(viewId);
    if (!view)
        return Failure::NoSuchId;
    const std::optional<ViewParam> param = change(view->param);
    view->param = param.value_or(view->param);
    return param ? Failure::None : Failure::BadArgument;
}

bool FisheyeViews::setDrawType(DrawType type)
{
    const std::lock_guard lock(mutex_);
    return std::exchange(drawType_, type) != type;
}

bool FisheyeViews::setFinish(int viewId)
{
    const std::lock_guard lock(mutex_);
    const View* view = find(viewId);
    if (!view)
        return false;
    strongBox_ = view->correct == CorrectType::View ? viewId : 0;
    if (strongBox_ == 0)
        touched_ = viewId;
    return true;
}

// The one that was worked with last, or the only one.
const FisheyeViews::View* FisheyeViews::touched() const
{
    if (const View* view = find(touched_))
        return view;
    const auto whole =
        std::find_if(views_.begin(), views_.end(), [](const auto& v) { return v.second.correct != CorrectType::View; });
    return whole == views_.end() ? nullptr : &whole->second;
}

// Of boxes that overlap it is the one whose middle is the nearest.
std::optional<int> FisheyeViews::boxAt(Point at) const
{
    const std::lock_guard lock(mutex_);
    const View* window = touched();
    const auto scene = window ? window->geometry().sceneAt(at) : std::nullopt;
    std::optional<int> best;
    double least = 0.5;
    for (const auto& [id, view] : views_) {
        const auto place = scene && view.correct == CorrectType::View ? view.geometry().pointOf(*scene) : std::nullopt;
        if (place && fromMiddle(*place) <= least) {
            least = fromMiddle(*place);
            best = id;
        }
    }
    return best;
}

Failure FisheyeViews::drag(int viewId, int ownViewId, Point start, Point from, Point to, Point& position) const
{
    const std::lock_guard lock(mutex_);
    const View* moved = find(viewId);
    const View* own = find(ownViewId);
    if (!moved || !own)
        return Failure::NoSuchId;
    if (moved->correct != CorrectType::View)
        return Failure::WrongState;
    const Point inside = LensModel().intoCircle(start);
    if (from.x == to.x && from.y == to.y) {
        position = inside;
        return Failure::None;
    }
    if (viewId != ownViewId) {
        const auto answer = own->geometry().movedBox(inside, from, to);
        position = answer.value_or(position);
        return answer ? Failure::None : Failure::BadArgument;
    }
    View then = *own;
    then.param.x = static_cast<float>(inside.x);
    then.param.y = static_cast<float>(inside.y);
    const ViewGeometry geometry = then.geometry();
    position = isStep(from, to) ? geometry.facing(to) : geometry.grabbed(from, to);
    return Failure::None;
}

// The host tells where the scan began, again and again; how far it came stands in the view itself, so that it also goes
// on from where somebody has moved the view meanwhile.
Failure FisheyeViews::scan(int viewId, PlaceType place, Point start, double step, Point& position)
{
    const std::lock_guard lock(mutex_);
    View* view = find(viewId);
    if (!view)
        return Failure::NoSuchId;
    if (view->correct != CorrectType::View)
        return Failure::WrongState;
    const bool goesOn = view->scanStart && view->scanStart->x == start.x && view->scanStart->y == start.y;
    if (!goesOn) {
        view->scanStart = start;
        view->scanSign = 1;
    }
    position = scanned(place, goesOn ? Point{view->param.x, view->param.y} : start, step, view->scanSign);
    return Failure::None;
}

std::vector<int> FisheyeViews::concernedBy(int viewId) const
{
    const std::lock_guard lock(mutex_);
    std::vector<int> ids;
    for (const auto& [id, view] : views_) {
        if (id == viewId || (drawType_ != DrawType::None && view.correct != CorrectType::View))
            ids.push_back(id);
    }
    return ids;
}

std::optional<std::pair<Warp, WindowShape>> FisheyeViews::shown(int viewId) const
{
    const std::lock_guard lock(mutex_);
    const View* view = find(viewId);
    return view ? std::optional(std::pair(view->geometry().warp(), view->shape)) : std::nullopt;
}

std::vector<int> FisheyeViews::withBoxes() const
{
    const std::lock_guard lock(mutex_);
    std::vector<int> ids;
    for (const auto& [id, view] : views_) {
        if (view.correct != CorrectType::View)
            ids.push_back(id);
    }
    return ids;
}

WarpSource::Look FisheyeViews::look(int viewId, const WindowShape& shape)
{
    const std::lock_guard lock(mutex_);
    View* view = find(viewId);
    if (!view)
        return {};
    view->shape = shape;
    return {view->geometry().warp(), outlines(*view)};
}

std::vector<Outline> FisheyeViews::outlines(const View& in) const
{
    std::vector<Outline> lines;
    if (drawType_ == DrawType::None || in.correct == CorrectType::View)
        return lines;
    const ViewGeometry window = in.geometry();
    for (const auto& [id, view] : views_) {
        if (view.correct != CorrectType::View)
            continue;
        const float width = (drawType_ == DrawType::Thin ? kThinLine : kWideLine) + (id == strongBox_ ? kStronger : 0);
        const auto& colour = view.param.colour[3] != 0 ? view.param.colour : kNoColourSet;
        lines.push_back({window.outlineOf(view.geometry()), colour, width});
    }
    return lines;
}

} // namespace tide
