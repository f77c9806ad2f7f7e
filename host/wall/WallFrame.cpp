#include "host/wall/WallFrame.h"

#include <QEvent>

namespace quillmark::lumen_wall {

WallFrame::WallFrame(QWidget* parent)
    : QWidget(parent)
    , wall_(new QWidget(this))
{
    setObjectName("wallFrame");
    setFocusPolicy(Qt::ClickFocus); // a click on the wall takes the keys from the panels
    wall_->setObjectName("wall");
    wall_->installEventFilter(this);
}

void WallFrame::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    fit();
}

// The wall's layout has seen the event before its filters do: the cells have had the size that the library wanted.
bool WallFrame::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == wall_ && event->type() == QEvent::Resize)
        fit();
    return QWidget::eventFilter(watched, event);
}

void WallFrame::fit()
{
    wall_->setGeometry(rect());
}

} // namespace quillmark::lumen_wall
