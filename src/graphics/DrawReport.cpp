#include "src/graphics/DrawReport.h"

#include "src/ApiDispatcher.h"
#include "src/graphics/MouseDispatch.h"

#include <QJsonDocument>
#include <QPointer>

namespace quillmark::lumen_deck::detail {
namespace {

// What the host calls a shape that was picked and one that was drawn; null: it is not told.
struct Words
{
    const char* chosen = nullptr;
    const char* drawn = nullptr;
};

Words wordsOf(GraphicsBase::GraphicsType type)
{
    switch (type) {
    case GraphicsBase::Rectangle:
        return {"Rectangle", "Rect"};
    case GraphicsBase::Polygon:
        return {"Polygon", "Polygon"};
    case GraphicsBase::Line:
    case GraphicsBase::Breakline:
        return {"Line", "Line"};
    default:
        return {};
    }
}

bool send(GraphicsView* view, LD_EventType type, const QJsonObject& object)
{
    const QPointer<GraphicsView> alive = view;
    const QJsonDocument document(object);
    if (QWidget* const mainWindow = mainWindowOf(view))
        callCallback(type, mainWindow, &document);
    return alive;
}

bool sendId(GraphicsView* view, LD_EventType type, const char* event, const char* word, int id)
{
    return !word || send(view, type, {{"id", id}, {"event", event}, {"type", word}});
}

QJsonObject jsonOf(const GraphicsView* view, const GraphicsView::Shape& shape)
{
    const auto lock = view->lockShapes();
    return shape->toJson();
}

} // namespace

bool reportShape(GraphicsView* view, const GraphicsView::Shape& shape)
{
    return send(view, LD_EVENT_SHAPE_FINISHED, jsonOf(view, shape));
}

bool reportFinished(GraphicsView* view, const GraphicsView::Shape& shape, const DrawSettings& settings)
{
    return settings.callbackMode
               ? reportShape(view, shape)
               : sendId(view, LD_EVENT_DRAWING_ENDED, "drawEnd", wordsOf(shape->type()).drawn, shape->id);
}

bool reportChosen(GraphicsView* view, const GraphicsView::Shape& shape)
{
    return sendId(view, LD_EVENT_SHAPE_CHOSEN, "choosed", wordsOf(shape->type()).chosen, shape->id);
}

} // namespace quillmark::lumen_deck::detail
