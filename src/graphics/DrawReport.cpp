#include "src/graphics/DrawReport.h"

#include "src/ApiDispatcher.h"
#include "src/graphics/MouseDispatch.h"

#include <QJsonDocument>

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

void send(const GraphicsView* view, LD_EventType type, const QJsonObject& object)
{
    const QJsonDocument document(object);
    if (QWidget* const mainWindow = mainWindowOf(view))
        callCallback(type, mainWindow, &document);
}

void sendId(const GraphicsView* view, LD_EventType type, const char* event, const char* word, int id)
{
    if (word)
        send(view, type, {{"id", id}, {"event", event}, {"type", word}});
}

QJsonObject jsonOf(const GraphicsView* view, const GraphicsView::Shape& shape)
{
    const auto lock = view->lockShapes();
    return shape->toJson();
}

} // namespace

void reportShape(const GraphicsView* view, const GraphicsView::Shape& shape)
{
    send(view, LD_EVENT_SHAPE_FINISHED, jsonOf(view, shape));
}

void reportFinished(const GraphicsView* view, const GraphicsView::Shape& shape, const DrawSettings& settings)
{
    if (settings.callbackMode)
        reportShape(view, shape);
    else
        sendId(view, LD_EVENT_DRAWING_ENDED, "drawEnd", wordsOf(shape->type()).drawn, shape->id);
}

void reportChosen(const GraphicsView* view, const GraphicsView::Shape& shape)
{
    sendId(view, LD_EVENT_SHAPE_CHOSEN, "choosed", wordsOf(shape->type()).chosen, shape->id);
}

} // namespace quillmark::lumen_deck::detail
