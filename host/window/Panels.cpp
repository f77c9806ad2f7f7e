#include "host/window/Panels.h"

#include "host/window/panels/DrawingPanel.h"
#include "host/window/panels/EventLog.h"
#include "host/window/panels/TalkPanel.h"
#include "host/window/panels/TransfersPanel.h"

#include <QKeyEvent>

#include <algorithm>
#include <iterator>

namespace quillmark::lumen_wall {

namespace {

template <class Panel> QWidget* make(Operator& wall, QWidget* parent)
{
    return new Panel(wall, parent);
}

} // namespace

const std::vector<PanelRow>& panels()
{
    static const std::vector<PanelRow> table{
        {"drawing", "Drawing", "W", Qt::RightDockWidgetArea, &make<DrawingPanel>},
        {"talk", "Talk", "K", Qt::RightDockWidgetArea, &make<TalkPanel>},
        {"transfers", "Transfers", "U", Qt::RightDockWidgetArea, &make<TransfersPanel>},
        {"events", "Events", "E", Qt::BottomDockWidgetArea, &make<EventLog>},
    };
    return table;
}

PanelKeys::PanelKeys(QWidget* panel)
    : QObject(panel)
{
    panel->installEventFilter(this);
}

// What the focused widget leaves over comes up to the panel.
bool PanelKeys::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::ShortcutOverride)
        return QObject::eventFilter(watched, event);
    constexpr int kKeys[] = {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter, Qt::Key_Up,
                             Qt::Key_Down,  Qt::Key_Left,   Qt::Key_Right};
    const int key = static_cast<QKeyEvent*>(event)->key();
    event->setAccepted(std::find(std::begin(kKeys), std::end(kKeys), key) != std::end(kKeys));
    return event->isAccepted();
}

} // namespace quillmark::lumen_wall
