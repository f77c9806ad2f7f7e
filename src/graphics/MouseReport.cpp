#include "src/graphics/MouseReport.h"

#include "src/ApiDispatcher.h"
#include "src/LayoutDetail.h"
#include "src/LayoutManager.h"
#include "src/player/IPlayer.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMouseEvent>
#include <QWheelEvent>

namespace quillmark::lumen_deck {

namespace {

using Kind = detail::GraphicsView::MouseEvent;

constexpr unsigned long kReportInterval = 200; // milliseconds between like events

// The last report, of whichever window.
unsigned long g_timestamp = 0;
int g_prevMouseEvent = 0;

// What the host calls each kind; a move with the left button held is told apart.
int reportedType(Kind kind, const QMouseEvent* event)
{
    switch (kind) {
    case Kind::LButtonDown:
        return 1;
    case Kind::LButtonDoubleClick:
        return 2;
    case Kind::LButtonUp:
        return 3;
    case Kind::RButtonDown:
        return 4;
    case Kind::RButtonUp:
        return 5;
    case Kind::MouseMove:
        return event->buttons() & Qt::LeftButton ? 7 : 6;
    case Kind::Wheel:
        return 8;
    }
    return 0;
}

bool tooSoon(Kind kind, unsigned long timestamp)
{
    if (timestamp - g_timestamp < kReportInterval && kind == g_prevMouseEvent)
        return true;
    g_timestamp = timestamp;
    g_prevMouseEvent = kind;
    return false;
}

QJsonArray pointInCell(const QPoint& position, const QWidget& cell)
{
    const QSize size = cell.size().expandedTo({1, 1}); // one without size has its pointer at the edge, not nowhere
    return {static_cast<double>(position.x()) / size.width(), static_cast<double>(position.y()) / size.height()};
}

int wheelDelta(const QWheelEvent& wheel)
{
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    return wheel.delta();
    QT_WARNING_POP
}

} // namespace

void mouseEventCallback(QWidget* mainWindow, Kind kind, const QMouseEvent* event, QWheelEvent* wheel)
{
    const Layout layout(mainWindow);
    IPlayWindow* const window = layout.getSelectedPlayWindow();
    if (!window)
        return;
    const auto* const player = window->findChild<IPlayer*>(QString(), Qt::FindDirectChildrenOnly);
    if (!player || !player->playing())
        return;
    const unsigned long timestamp = kind == Kind::Wheel ? wheel->timestamp() : event->timestamp();
    if (tooSoon(kind, timestamp))
        return;
    QJsonObject report{{"wndIndex", layout.indexOf(window)}, {"eventType", reportedType(kind, event)}};
    if (kind == Kind::Wheel)
        report["delta"] = wheelDelta(*wheel);
    else
        report["point"] = pointInCell(event->pos(), *window->parentWidget());
    const QJsonDocument document(report);
    callCallback(LD_EVENT_MOUSE, mainWindow, &document);
}

} // namespace quillmark::lumen_deck
