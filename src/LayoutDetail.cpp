#include "src/LayoutDetail.h"

#include "include/tide_pipe/tide_pipe.h"
#include "src/ApiDispatcher.h"
#include "src/LayoutManager.h"
#include "src/WindowDirectory.h"
#include "src/graphics/IGraphicsView.h"

#include <QDebug>
#include <QJsonObject>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>

#include <utility>

namespace quillmark::lumen_deck {

namespace {

const QColor kUnselectedFrame(23, 28, 32, 255);

// The host may delete the wall when it is told of the event. An accepted event goes no further; Qt would hand it to the
// parent of the widget that is gone.
template <class Emission> void tell(QWidget* widget, QEvent* event, Emission emission)
{
    const QPointer<QWidget> alive = widget;
    emission();
    if (!alive)
        event->accept();
}

QRect fillCell(QSize cell)
{
    return {QPoint(1, 1), QPoint(cell.width() - 2, cell.height() - 2)};
}

// As large as fits inside the frame, in the middle of the direction that has room to spare.
QRect fitAspect(QSize cell, QSize aspect)
{
    const qint64 width = cell.width();
    const qint64 height = cell.height();
    const double cellRatio = static_cast<double>(width) / static_cast<double>(height);
    if (cellRatio > static_cast<double>(aspect.width()) / aspect.height()) {
        const auto w = static_cast<int>(aspect.width() * (height - 2) / aspect.height());
        const int x = (cell.width() - w) / 2;
        return {QPoint(x, 1), QPoint(x + w - 1, cell.height() - 2)};
    }
    const auto h = static_cast<int>(aspect.height() * (width - 2) / aspect.width());
    const int y = (cell.height() - h) / 2;
    return {QPoint(1, y), QPoint(cell.width() - 2, y + h - 1)};
}

QRect fitSquare(QSize cell)
{
    if (cell.height() >= cell.width()) {
        const int y = (cell.height() - (cell.width() - 2)) / 2;
        return {1, y, cell.width() - 2, cell.width() - 2};
    }
    const int x = (cell.width() - (cell.height() - 2)) / 2;
    return {x, 1, cell.height() - 2, cell.height() - 2};
}

} // namespace

QRect fitPlayWindow(QSize cell, int ratioMode, QSize resolution)
{
    switch (ratioMode) {
    case 0:
        return fillCell(cell);
    case 1:
        return fitAspect(cell, {4, 3});
    case 2:
        return fitAspect(cell, {16, 9});
    case 3:
        return resolution.width() > 0 && resolution.height() > 0 ? fitAspect(cell, resolution) : fillCell(cell);
    case 4:
        return fitSquare(cell);
    default:
        return {};
    }
}

IPlayWindow* MakePlayWindow()
{
    auto* window = new detail::PlayWindow;
    window->setAttribute(Qt::WA_NativeWindow);
    window->setAutoFillBackground(false);
    window->setAttribute(Qt::WA_OpaquePaintEvent);
    return window;
}

void setEngineDraws(QWidget* playWindow, bool draws)
{
    if (playWindow->testAttribute(Qt::WA_PaintOnScreen) == draws)
        return;
    playWindow->setAttribute(Qt::WA_PaintOnScreen, draws);
    if (!draws)
        playWindow->update();
}

int tellResolutionChange(const QWidget* window)
{
    return window ? TP_WndResolutionChange(window->winId()) : -1;
}

namespace detail {

// A draw hook that runs now still has the view: children go later.
PlayWindow::~PlayWindow()
{
    WindowDirectory::instance().remove(this);
}

QPaintEngine* PlayWindow::paintEngine() const
{
    return testAttribute(Qt::WA_PaintOnScreen) ? nullptr : IPlayWindow::paintEngine();
}

void PlayWindow::mousePressEvent(QMouseEvent* event)
{
    QWidget::mousePressEvent(event);
    tell(this, event, [&] { emit sigMousePress(event); });
}

void PlayWindow::mouseReleaseEvent(QMouseEvent* event)
{
    QWidget::mouseReleaseEvent(event);
    tell(this, event, [&] { emit sigMouseRelease(event); });
}

// Other buttons end here: the cell sees left double clicks only.
void PlayWindow::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    QWidget::mouseDoubleClickEvent(event);
    tell(this, event, [&] { emit sigMouseDoubleClick(event); });
}

void PlayWindow::mouseMoveEvent(QMouseEvent* event)
{
    QWidget::mouseMoveEvent(event);
    tell(this, event, [&] { emit sigMouseMove(event); });
}

void PlayWindow::wheelEvent(QWheelEvent* event)
{
    QWidget::wheelEvent(event);
    tell(this, event, [&] { emit sigWheel(event); });
}

void PlayWindow::paintEvent(QPaintEvent* event)
{
    emit sigPaint(event);
    QWidget::paintEvent(event);
}

void PlayWindow::resizeEvent(QResizeEvent* event)
{
    emit sigResize(event);
    QWidget::resizeEvent(event);
}

void PlayWindow::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::WinIdChange)
        qDebug() << "play window hwnd changed";
}

} // namespace detail

CellWidget::CellWidget(QWidget* parent)
    : QWidget(parent)
    , playWindow_(MakePlayWindow())
{
    UseGraphicsView(playWindow_);
    playWindow_->setParent(this);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void CellWidget::select()
{
    if (selected_)
        return;
    selected_ = true;
    nativePaint();
    const QJsonDocument document(QJsonObject{{"wndInfo", QJsonObject{{"wndIndex", index()}}}});
    callCallback(LD_EVENT_SELECTED, parentWidget(), &document);
}

void CellWidget::unselect()
{
    if (!selected_)
        return;
    selected_ = false;
    nativePaint();
}

void CellWidget::nativePaint()
{
    update();
}

void CellWidget::setBackgroundColor(QVariant value)
{
    UseGraphicsView(playWindow_)->setBackgroundColor(value);
    backgroundColor_ = std::move(value);
}

void CellWidget::setResolution(int width, int height)
{
    resolutionWidth_ = width;
    resolutionHeight_ = height;
}

int CellWidget::index()
{
    return Layout(parentWidget()).indexOf(this);
}

// The state comes first: whoever hears the signal may run an event loop of its own, in which the button comes up.
void CellWidget::mousePressEvent(QMouseEvent* event)
{
    QWidget::mousePressEvent(event);
    pressed_ = true;
    lastPosition_ = event->globalPos();
    tell(this, event, [&] { emit sigMousePress(event, this); });
}

void CellWidget::mouseMoveEvent(QMouseEvent* event)
{
    QWidget::mouseMoveEvent(event);
    const QWidget* mainWidget = parentWidget();
    if (!pressed_ || !mainWidget)
        return;
    const QPointF way = event->globalPos() - std::exchange(lastPosition_, event->globalPos());
    QPointF delta(way.x() / mainWidget->width(), way.y() / mainWidget->height());
    tell(this, event, [&] { emit sigMousedrag(&delta, this); });
}

void CellWidget::mouseReleaseEvent(QMouseEvent* event)
{
    QWidget::mouseReleaseEvent(event);
    pressed_ = false;
}

void CellWidget::mouseDoubleClickEvent(QMouseEvent* event)
{
    const QJsonDocument document(QJsonObject{{"wndIndex", index()}});
    tell(this, event, [&] { callCallback(LD_EVENT_DOUBLE_CLICKED, parentWidget(), &document); });
}

void CellWidget::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    if (!backgroundColor_.isNull())
        painter.fillRect(rect(), backgroundColor_.value<QColor>());
    painter.setPen(QPen(selected_ ? borderColor_ : kUnselectedFrame));
    painter.drawRect(0, 0, width() - 1, height() - 1);
}

void CellWidget::resizeEvent(QResizeEvent* /*event*/)
{
    if (ratioMode_ >= 0 && ratioMode_ <= 4)
        playWindow_->setGeometry(fitPlayWindow(size(), ratioMode_, {resolutionWidth_, resolutionHeight_}));
    tellResolutionChange(playWindow_);
}

// A hidden cell hears of no release.
void CellWidget::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    pressed_ = false;
}

void CellStack::push(CellWidget* cell)
{
    spares_.emplace_front(cell);
    cell->hide();
    cell->setParent(nullptr);
}

CellWidget* CellStack::pop()
{
    if (spares_.empty())
        return new CellWidget(nullptr);
    CellWidget* cell = spares_.front().release();
    spares_.pop_front();
    return cell;
}

QList<CellWidget*> CellStack::cells() const
{
    QList<CellWidget*> all;
    for (const auto& cell : spares_)
        all.append(cell.get());
    return all;
}

} // namespace quillmark::lumen_deck
