#pragma once

#include "engine/core/Failure.h"
#include "engine/present/fisheye/ViewGeometry.h"

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

namespace tide {

// Which boxes of the views are drawn where the circle is seen as a whole.
enum class DrawType
{
    None = 0,
    Thin = 1, // for many views
    Wide = 2
};

// The dewarped views of one stream and what a host sets of them. Any thread may call; the render thread takes what it
// draws as a copy.
class FisheyeViews : public std::enable_shared_from_this<FisheyeViews>
{
public:
    // What the presenter asks when it draws the view; it may outlive the view.
    std::shared_ptr<WarpSource> add(int viewId, PlaceType place, CorrectType correct, const ViewParam& param);
    void remove(int viewId);

    std::optional<ViewParam> param(int viewId) const;
    // `change` gets the present parameters and answers the new ones, or nothing for bad ones.
    using Change = std::function<std::optional<ViewParam>(const ViewParam&)>;
    Failure update(int viewId, const Change& change);

    bool setDrawType(DrawType type); // false when it is that already
    // The box of a view is drawn stronger; another view is the one that boxAt asks about.
    bool setFinish(int viewId);

    // The view whose box lies under a point of the window that shows the boxes.
    std::optional<int> boxAt(Point at) const;
    // A move of the pointer in the window of `ownViewId`, begun when the view stood at `start`.
    Failure drag(int viewId, int ownViewId, Point start, Point from, Point to, Point& position) const;
    // The next position of a scan that was begun at `start`, seen from where the view stands now.
    Failure scan(int viewId, PlaceType place, Point start, double step, Point& position);

    // Those whose pictures change with this view's parameters.
    std::vector<int> concernedBy(int viewId) const;
    std::vector<int> withBoxes() const; // where boxes are drawn
    // What the view shows, and the shape of its window.
    std::optional<std::pair<Warp, WindowShape>> shown(int viewId) const;

private:
    class Source;

    struct View
    {
        PlaceType place;
        CorrectType correct;
        ViewParam param;
        WindowShape shape;
        std::optional<Point> scanStart;
        int scanSign = 1;

        ViewGeometry geometry() const { return ViewGeometry(place, correct, param, shape); }
    };

    WarpSource::Look look(int viewId, const WindowShape& shape);
    std::vector<Outline> outlines(const View& in) const;
    const View* find(int viewId) const;
    View* find(int viewId);
    const View* touched() const;

    mutable std::mutex mutex_; // guards all below
    std::map<int, View> views_;
    DrawType drawType_ = DrawType::None;
    int strongBox_ = 0;
    int touched_ = 0;
};

} // namespace tide
