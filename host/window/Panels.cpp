#include "host/window/Panels.h"

#include "host/window/panels/DrawingPanel.h"
#include "host/window/panels/EventLog.h"

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
        {"events", "Events", "E", Qt::BottomDockWidgetArea, &make<EventLog>},
    };
    return table;
}

} // namespace quillmark::lumen_wall
