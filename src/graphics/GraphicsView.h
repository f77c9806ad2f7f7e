#pragma once

#include "src/graphics/GraphicsBase.h"
#include "src/graphics/IGraphicsView.h"
#include "src/graphics/ToolBase.h"

#include <QPointF>

#include <atomic>
#include <functional>
#include <mutex>

class QMouseEvent;
class QPaintEvent;
class QWheelEvent;

namespace quillmark::lumen_deck::detail {

// The shapes of one play window, the tool that is active there and what the mouse works on. Main thread, unless marked.
class GraphicsView : public IGraphicsView
{
    Q_OBJECT
public:
    using Shape = std::shared_ptr<GraphicsBase>;
    using Shapes = std::vector<Shape>;
    using GraphicsType = GraphicsBase::GraphicsType;

    enum MouseEvent
    {
        LButtonDown = 1,
        LButtonUp,
        RButtonDown,
        RButtonUp,
        LButtonDoubleClick,
        MouseMove,
        Wheel
    };

    explicit GraphicsView(QWidget* parent); // an IPlayWindow
    ~GraphicsView() override;               // returns when no draw hook is in the view

    QVariant backgroundColor() const override;
    void setBackgroundColor(QVariant value) override;
    void render(void* drawContext) override; // draw thread
    void renderBackground(void* drawContext) override;
    void renderBackground(QPainter* painter) override;

    // The list, first drawn first. Any thread. A reference is the object name (a string) or the id (any number).
    void addGraphics(const Shape& target);
    Shapes getGraphics() const;
    Shapes getGraphics(GraphicsType type) const;
    Shape getGraphics(const QVariant& reference) const;
    Shape getGraphics(const QVariant& reference, GraphicsType type) const;
    void clearGraphics(const QVariant& reference);
    void clearGraphics(const QVariant& reference, GraphicsType type); // with its family
    void clearGraphics(const QJsonArray& references, GraphicsType type);
    void clearGraphics(const Shape& target);
    int clearSelectedGraphic(); // the id of the last one removed, or -1
    void selectGraphics(const QVariant& reference, GraphicsType type);

    void clearGraphics();
    void clearGraphics(GraphicsType type);

    // Held while the fields of a shape in this view are changed, or read where `render` writes them. Not for longer
    // than one shape takes, and not across an operation of the view. Any thread.
    [[nodiscard]] std::unique_lock<std::mutex> lockShapes() const;

    void setTool(const std::shared_ptr<ToolBase>& tool); // empty: no tool
    void enableDraw();
    void disableDraw();

    QWidget* window() const; // the play window

    // The state that the mouse handlers work on.
    std::shared_ptr<ToolBase> current_tool_;
    std::shared_ptr<GraphicsBase> current_selected_graphics_;
    bool draw_disabled_ = true;
    std::shared_ptr<ToolBase> saved_tool_; // set aside while drawing is disabled
    QPointF last_mouse_pos_;               // relative to the window

public slots:
    void onPaintEvent(QPaintEvent* event);
    void onMousePressEvent(QMouseEvent* event);
    void onMouseMoveEvent(QMouseEvent* event);
    void onMouseWheelEvent(QWheelEvent* event);
    void onMouseReleaseEvent(QMouseEvent* event);
    void onMouseDoubleClickEvent(QMouseEvent* event);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    using List = std::shared_ptr<const Shapes>;

    List snapshot() const; // any thread
    Shapes change(const std::function<Shapes(Shapes& shapes)>& edit);
    template <class Condition> Shapes removeIf(Condition condition);
    void keepSize(const QSize& size);
    QColor background() const;
    void restorePicture() const;

    mutable std::mutex lock_; // guards graphics_, snapshot_ and what the shapes hold
    Shapes graphics_;
    mutable List snapshot_;              // of graphics_, made when one is asked for after a change
    std::atomic<std::uint64_t> size_{0}; // the window's, for the draw thread: width above height
    QVariant background_color_ = QColor(Qt::transparent);
};

} // namespace quillmark::lumen_deck::detail
