#include "src/graphics/GraphicsView.h"

#include "include/tide_pipe/tide_pipe.h"
#include "src/LayoutDetail.h"
#include "src/WindowDirectory.h"
#include "src/graphics/ShapeTable.h"
#include "src/player/IPlayer.h"

#include <QPainter>
#include <QResizeEvent>
#include <QSet>
#include <QWidget>

#include <algorithm>
#include <optional>

namespace quillmark::lumen_deck {

IGraphicsView* UseGraphicsView(QWidget* parent)
{
    if (auto* const view = parent->findChild<IGraphicsView*>())
        return view;
    return new detail::GraphicsView(parent);
}

namespace detail {
namespace {

using Shape = GraphicsView::Shape;
using Shapes = GraphicsView::Shapes;
using GraphicsType = GraphicsView::GraphicsType;

// How a host names shapes: texts are object names, whatever else reads as a number is an id.
class References
{
public:
    explicit References(const QVariant& reference) { add(reference); }
    explicit References(const QJsonArray& references)
    {
        for (const QJsonValue& reference : references)
            add(reference.toVariant());
    }

    bool matches(const Shape& shape) const { return ids_.contains(shape->id) || names_.contains(shape->objectName()); }

private:
    void add(const QVariant& reference)
    {
        bool isNumber = false;
        if (reference.userType() == QMetaType::QString)
            names_.insert(reference.toString());
        else if (const int id = reference.toInt(&isNumber); isNumber)
            ids_.insert(id);
    }

    QSet<int> ids_;
    QSet<QString> names_;
};

bool sameFamily(const Shape& shape, GraphicsType type)
{
    return shape->type() == type || shapeRow(shape->type()).family == type;
}

template <class Condition> Shape firstOf(const Shapes& shapes, Condition condition)
{
    const auto found = std::find_if(shapes.begin(), shapes.end(), condition);
    return found != shapes.end() ? *found : nullptr;
}

// Where `target` goes in the list: over the one of its kind, else over the shape of its id, else on top.
Shapes::iterator slotOf(Shapes& shapes, const Shape& target)
{
    const ShapeRow& row = shapeRow(target->type());
    if (row.sameSlot) {
        const auto found = std::find_if(shapes.begin(), shapes.end(),
                                        [&](const Shape& shape) { return row.sameSlot(*target, *shape); });
        if (found != shapes.end())
            return found;
    }
    return std::find_if(shapes.begin(), shapes.end(), [&](const Shape& shape) {
        return target->id != -1 && shape->id == target->id &&
               (shape->type() == target->type() || shape->type() == row.family);
    });
}

// Which shapes of its id a tool removes when it comes. Nothing: whatever has the id.
std::optional<GraphicsType> shapesOf(ToolBase::ToolType tool)
{
    switch (tool) {
    case ToolBase::Line:
    case ToolBase::Breakline:
        return GraphicsBase::Line;
    case ToolBase::Rectangle:
    case ToolBase::Polygon:
        return GraphicsBase::Polygon;
    case ToolBase::Point:
        return GraphicsBase::Point;
    default:
        return std::nullopt;
    }
}

std::uint64_t packed(const QSize& size)
{
    return static_cast<std::uint64_t>(static_cast<std::uint32_t>(size.width())) << 32 |
           static_cast<std::uint32_t>(size.height());
}

QSize unpacked(std::uint64_t size)
{
    return {static_cast<int>(size >> 32), static_cast<int>(size & 0xFFFFFFFF)};
}

} // namespace

GraphicsView::GraphicsView(QWidget* parent)
    : IGraphicsView(parent)
{
    auto* const source = static_cast<IPlayWindow*>(parent);
    connect(source, &IPlayWindow::sigPaint, this, &GraphicsView::onPaintEvent, Qt::UniqueConnection);
    connect(source, &IPlayWindow::sigMousePress, this, &GraphicsView::onMousePressEvent, Qt::UniqueConnection);
    connect(source, &IPlayWindow::sigMouseMove, this, &GraphicsView::onMouseMoveEvent, Qt::UniqueConnection);
    connect(source, &IPlayWindow::sigMouseRelease, this, &GraphicsView::onMouseReleaseEvent, Qt::UniqueConnection);
    connect(source, &IPlayWindow::sigWheel, this, &GraphicsView::onMouseWheelEvent, Qt::UniqueConnection);
    connect(source, &IPlayWindow::sigMouseDoubleClick, this, &GraphicsView::onMouseDoubleClickEvent,
            Qt::UniqueConnection);
    keepSize(parent->size());
    parent->installEventFilter(this);
    WindowDirectory::instance().add(parent, this);
}

GraphicsView::~GraphicsView()
{
    WindowDirectory::instance().remove(window());
}

QWidget* GraphicsView::window() const
{
    return static_cast<QWidget*>(parent());
}

// Watched rather than asked for: the draw thread may not call into the widget.
bool GraphicsView::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize)
        keepSize(static_cast<QResizeEvent*>(event)->size());
    return IGraphicsView::eventFilter(watched, event);
}

void GraphicsView::keepSize(const QSize& size)
{
    size_ = packed(size);
}

QVariant GraphicsView::backgroundColor() const
{
    return background_color_;
}

void GraphicsView::setBackgroundColor(QVariant value)
{
    background_color_ = std::move(value);
}

QColor GraphicsView::background() const
{
    return background_color_.value<QColor>();
}

void GraphicsView::render(void* drawContext)
{
    const QSize size = unpacked(size_);
    const List shapes = snapshot();
    for (const Shape& shape : *shapes) {
        const auto lock = lockShapes();
        shape->render(drawContext, size);
    }
}

// The engine's picture covers whatever would be painted here.
void GraphicsView::renderBackground(void*) {}

void GraphicsView::renderBackground(QPainter* painter)
{
    const QColor color = background();
    if (color != QColor(Qt::transparent))
        painter->fillRect(window()->rect(), QBrush(color, Qt::SolidPattern));
}

void GraphicsView::onPaintEvent(QPaintEvent*)
{
    const auto* const player = window()->findChild<IPlayer*>(QString(), Qt::FindDirectChildrenOnly);
    if (player && player->playing())
        return; // the engine owns the picture
    QPainter painter(window());
    renderBackground(&painter);
}

std::unique_lock<std::mutex> GraphicsView::lockShapes() const
{
    return std::unique_lock(lock_);
}

GraphicsView::List GraphicsView::snapshot() const
{
    const std::lock_guard lock(lock_);
    if (!snapshot_)
        snapshot_ = std::make_shared<const Shapes>(graphics_);
    return snapshot_;
}

// Gives what `edit` took out of the list: no shape dies under the lock.
Shapes GraphicsView::change(const std::function<Shapes(Shapes& shapes)>& edit)
{
    List stale;
    const std::lock_guard lock(lock_);
    stale = std::exchange(snapshot_, nullptr);
    return edit(graphics_);
}

template <class Condition> Shapes GraphicsView::removeIf(Condition condition)
{
    return change([&](Shapes& shapes) {
        const auto firstGone =
            std::stable_partition(shapes.begin(), shapes.end(), [&](const Shape& shape) { return !condition(shape); });
        Shapes gone(std::make_move_iterator(firstGone), std::make_move_iterator(shapes.end()));
        shapes.erase(firstGone, shapes.end());
        return gone;
    });
}

void GraphicsView::addGraphics(const Shape& target)
{
    if (!target)
        return;
    change([&](Shapes& shapes) -> Shapes {
        const auto slot = slotOf(shapes, target);
        if (slot != shapes.end())
            return {std::exchange(*slot, target)};
        shapes.push_back(target);
        return {};
    });
}

Shapes GraphicsView::getGraphics() const
{
    return *snapshot();
}

Shapes GraphicsView::getGraphics(GraphicsType type) const
{
    Shapes found;
    const List shapes = snapshot();
    std::copy_if(shapes->begin(), shapes->end(), std::back_inserter(found),
                 [&](const Shape& shape) { return type == GraphicsBase::Any || shape->type() == type; });
    return found;
}

Shape GraphicsView::getGraphics(const QVariant& reference) const
{
    const References wanted(reference);
    return firstOf(*snapshot(), [&](const Shape& shape) { return wanted.matches(shape); });
}

Shape GraphicsView::getGraphics(const QVariant& reference, GraphicsType type) const
{
    const References wanted(reference);
    return firstOf(*snapshot(), [&](const Shape& shape) { return shape->type() == type && wanted.matches(shape); });
}

void GraphicsView::clearGraphics()
{
    removeIf([](const Shape&) { return true; });
    current_selected_graphics_.reset();
}

void GraphicsView::clearGraphics(GraphicsType type)
{
    if (type == GraphicsBase::Any)
        return clearGraphics();
    removeIf([&](const Shape& shape) { return shape->type() == type; });
}

void GraphicsView::clearGraphics(const QVariant& reference)
{
    removeIf([wanted = References(reference)](const Shape& shape) { return wanted.matches(shape); });
}

void GraphicsView::clearGraphics(const QVariant& reference, GraphicsType type)
{
    removeIf([wanted = References(reference), type](const Shape& shape) {
        return sameFamily(shape, type) && wanted.matches(shape);
    });
}

void GraphicsView::clearGraphics(const QJsonArray& references, GraphicsType type)
{
    removeIf([wanted = References(references), type](const Shape& shape) {
        return shape->type() == type && wanted.matches(shape);
    });
}

void GraphicsView::clearGraphics(const Shape& target)
{
    removeIf([&](const Shape& shape) { return shape == target; });
}

int GraphicsView::clearSelectedGraphic()
{
    const Shapes gone = removeIf([](const Shape& shape) { return shape->selected; });
    return gone.empty() ? -1 : gone.back()->id;
}

// Ids of 0 and less select nothing.
void GraphicsView::selectGraphics(const QVariant& reference, GraphicsType)
{
    const bool byName = reference.userType() == QMetaType::QString;
    const References wanted(reference);
    for (const Shape& shape : getGraphics()) {
        const auto lock = lockShapes();
        shape->selected = (byName || shape->id > 0) && wanted.matches(shape);
    }
}

void GraphicsView::setTool(const std::shared_ptr<ToolBase>& tool)
{
    std::shared_ptr<ToolBase>& slot = draw_disabled_ ? saved_tool_ : current_tool_;
    const std::shared_ptr<ToolBase> old = std::exchange(slot, tool);
    if (old && old->type() == ToolBase::Zoom)
        restorePicture();
    if (!tool || tool->id == -1)
        return;
    if (const std::optional<GraphicsType> shapes = shapesOf(tool->type()))
        clearGraphics(QVariant(tool->id), *shapes);
    else
        clearGraphics(QVariant(tool->id));
}

// Whatever the engine answers, the tool changes.
void GraphicsView::restorePicture() const
{
    const auto* const player = window()->findChild<IPlayer*>(QString(), Qt::FindDirectChildrenOnly);
    if (player && player->playing())
        TP_SetDisplayRegion(player->playId(), 0, nullptr, 0, 1);
}

void GraphicsView::enableDraw()
{
    if (!draw_disabled_)
        return;
    draw_disabled_ = false;
    current_tool_ = saved_tool_;
}

void GraphicsView::disableDraw()
{
    if (draw_disabled_)
        return;
    draw_disabled_ = true;
    saved_tool_ = std::move(current_tool_);
    current_tool_.reset();
}

} // namespace detail
} // namespace quillmark::lumen_deck
