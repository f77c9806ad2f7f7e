#include "host/window/Panels.h"

#include "host/window/panels/DrawingPanel.h"
#include "host/window/panels/EventLog.h"
#include "host/window/panels/FisheyePanel.h"
#include "host/window/panels/SettingsPanel.h"
#include "host/window/panels/TalkPanel.h"
#include "host/window/panels/TransfersPanel.h"

#include <QApplication>
#include <QDockWidget>
#include <QKeyEvent>

#include <algorithm>
#include <iterator>

namespace quillmark::lumen_wall {

namespace {

template <class Panel> QWidget* make(Operator& wall, QWidget* parent)
{
    return new Panel(wall, parent);
}

bool isInPanel(QObject* object)
{
    while (object && !qobject_cast<QDockWidget*>(object))
        object = object->parent();
    return object != nullptr;
}

} // namespace

const std::vector<PanelRow>& panels()
{
    static const std::vector<PanelRow> table{
        {"drawing", "Drawing", "W", Qt::RightDockWidgetArea, &make<DrawingPanel>},
        {"fisheye", "Fisheye", "Y", Qt::RightDockWidgetArea, &make<FisheyePanel>},
        {"talk", "Talk", "K", Qt::RightDockWidgetArea, &make<TalkPanel>},
        {"transfers", "Transfers", "U", Qt::RightDockWidgetArea, &make<TransfersPanel>},
        {"settings", "Settings", "Ctrl+,", Qt::RightDockWidgetArea, &make<SettingsPanel>},
        {"events", "Events", "E", Qt::BottomDockWidgetArea, &make<EventLog>},
    };
    return table;
}

PanelKeys::PanelKeys(QObject* parent)
    : QObject(parent)
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool PanelKeys::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::ShortcutOverride || !(QApplication::activePopupWidget() || isInPanel(watched)))
        return QObject::eventFilter(watched, event);
    constexpr int kKeys[] = {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter, Qt::Key_Up,
                             Qt::Key_Down,  Qt::Key_Left,   Qt::Key_Right};
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (std::find(std::begin(kKeys), std::end(kKeys), key) == std::end(kKeys))
        return QObject::eventFilter(watched, event);
    event->accept();
    return !QApplication::activePopupWidget(); // a list looks at them here already
}

} // namespace quillmark::lumen_wall
