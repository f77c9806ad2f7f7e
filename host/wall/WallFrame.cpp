#include "host/wall/WallFrame.h"

#include <QCoreApplication>
#include <QEvent>

namespace quillmark::lumen_wall {

namespace {

QEvent::Type fitEvent()
{
    static const auto type = static_cast<QEvent::Type>(QEvent::registerEventType());
    return type;
}

} // namespace

WallFrame::WallFrame(QWidget* parent)
    : QWidget(parent)
    , wall_(new QWidget(this))
{
    setObjectName("wallFrame");
    wall_->setObjectName("wall");
    wall_->installEventFilter(this);
}

void WallFrame::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    fit();
}

// Not at once: the call that resized the wall relies on its cells having seen that size when it returns. But before
// whatever else waits, so that nobody meets the wall at the odd size.
bool WallFrame::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == wall_ && event->type() == QEvent::Resize && wall_->geometry() != rect())
        QCoreApplication::postEvent(this, new QEvent(fitEvent()), Qt::HighEventPriority);
    return QWidget::eventFilter(watched, event);
}

bool WallFrame::event(QEvent* event)
{
    if (event->type() != fitEvent())
        return QWidget::event(event);
    fit();
    return true;
}

void WallFrame::fit()
{
    wall_->setGeometry(rect());
}

} // namespace quillmark::lumen_wall
