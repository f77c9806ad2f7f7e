#pragma once

#include <QColor>
#include <QPointF>
#include <QVariant>
#include <QWidget>

#include <deque>
#include <memory>

namespace quillmark::lumen_deck {

// The surface of a video: a native window that the stream engine draws into. Its view and its player are children.
class IPlayWindow : public QWidget
{
    Q_OBJECT
public:
    using QWidget::QWidget;

signals:
    void sigPaint(QPaintEvent* event);
    void sigMouseMove(QMouseEvent* event);
    void sigMouseDoubleClick(QMouseEvent* event);
    void sigMousePress(QMouseEvent* event);
    void sigMouseRelease(QMouseEvent* event);
    void sigWheel(QWheelEvent* event);
    void sigResize(QResizeEvent* event);
};

// A play window with no parent. Its view and its entry in the WindowDirectory are the caller's affair; it leaves the
// directory by itself when it is destroyed.
IPlayWindow* MakePlayWindow();

// From the first picture of a stream to its stop the window is the engine's: Qt does not paint there, since it would
// paint over the picture. The player says when; afterwards the window is painted again.
void setEngineDraws(QWidget* playWindow, bool draws);

// Tells the stream engine that the window has another size; answers what the engine answers, -1 for no window.
int tellResolutionChange(const QWidget* window);

namespace detail {

// Turns its events into the signals of IPlayWindow and lets them go on to the cell.
class PlayWindow : public IPlayWindow
{
    Q_OBJECT
public:
    using IPlayWindow::IPlayWindow;
    ~PlayWindow() override;
    QPaintEngine* paintEngine() const override;

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
};

} // namespace detail

// One window of the wall: frame, selection, drag, and the play window fitted in by the ratio mode. Main thread.
class CellWidget : public QWidget
{
    Q_OBJECT
public:
    explicit CellWidget(QWidget* parent);

    IPlayWindow* playWindow() const { return playWindow_; }

    bool isSelected() const { return selected_; }
    void select(); // sends LD_EVENT_SELECTED if it was not
    void unselect();
    void nativePaint();

    QColor borderColor() const { return borderColor_; }
    void setBorderColor(QColor color) { borderColor_ = color; }
    QVariant backgroundColor() const { return backgroundColor_; }
    void setBackgroundColor(QVariant value); // a QColor or null

    // Count from the next resize on.
    void setRatioMode(int mode) { ratioMode_ = mode; }
    void setResolution(int width, int height);

signals:
    void sigMousePress(QMouseEvent* event, CellWidget* target);
    void sigMousedrag(QPointF* delta, CellWidget* target); // fractions of the main widget; valid during the signal

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    int index();

    int ratioMode_ = 0;
    QColor borderColor_ = Qt::transparent;
    QVariant backgroundColor_ = QColor(Qt::transparent);
    int resolutionWidth_ = 0; // of the video, for ratio mode 3
    int resolutionHeight_ = 0;
    bool selected_ = false;
    bool pressed_ = false;
    QPointF lastPosition_; // of the mouse, global
    IPlayWindow* playWindow_;
};

// Where the play window goes in a cell of this size; null for a mode that is none.
QRect fitPlayWindow(QSize cell, int ratioMode, QSize resolution);

// The cells that a layout does not need at present: hidden, without a parent, last in first out.
class CellStack : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    void push(CellWidget* cell);      // takes ownership
    CellWidget* pop();                // gives up ownership; a new cell when there is no spare one
    QList<CellWidget*> cells() const; // in the order in which pop gives them

private:
    std::deque<std::unique_ptr<CellWidget>> spares_;
};

} // namespace quillmark::lumen_deck
