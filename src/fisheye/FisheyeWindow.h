#pragma once

#include "include/tide_pipe/tide_pipe.h"
#include "src/WindowDirectory.h"
#include "src/fisheye/FisheyeMarks.h"
#include "src/fisheye/FisheyeTypes.h"

#include <QBasicTimer>
#include <QObject>
#include <QPointer>

#include <atomic>
#include <optional>
#include <vector>

class QMouseEvent;
class QResizeEvent;
class QWheelEvent;
class QWidget;

namespace quillmark::lumen_deck {

class Player;

// The fisheye companion of one play window, a direct child of it. With software play the window shows a view of a
// dewarped stream, and the user moves that view; without, it shows a stream that a device has expanded, and what the
// user does is reported to the host. Main thread, unless marked. Results are 0 or -1 where nothing is said.
class FisheyeWindow : public QObject, public IFisheyeOverlay
{
    Q_OBJECT
public:
    explicit FisheyeWindow(QWidget* window);
    ~FisheyeWindow() override;

    void setWindowPTZ(const FisheyePTZ& ptz) { windowPTZ_ = ptz; } // where the view begins
    void setTriggerMarkType(int type) { triggerMarkType_ = type; }
    void setColor(const FEC_COLOR& color) { color_ = color; } // of the view's box
    void setCorrectType(int type) { correctType_ = type; }
    void setWindowPTZId(int id) { windowPTZId_ = id; } // the number of a device's view
    void setWindowType(int type);                      // what is no FisheyeWindowType is an origin window
    void setSoftwarePlay(bool software);

    QWidget* getWindowWidget() const { return window_; }
    int getWindowType() const { return windowType_; }
    bool softwarePlay() const { return softwarePlay_; }
    int getPlayerId() const;                // of the view; -1 when there is none
    int getCurrentWindowRealPlayId() const; // of the stream behind the window; -1 when there is none

    // Starts the view in place of whatever plays in the window. The window brings its shapes along.
    int subWindowPlay(int realPlayId, TP_WId windowHandle, const _TP_FISHEYEPARAM* param, int placeType);
    int subWindowStop(); // for a view whose stream has ended
    void endView();      // for one that goes without its stream; nothing is painted, the wall may be going too

    // What the engine says of the view, and tells it.
    int getFisheyeParam(_TP_FISHEYEPARAM* param) const;
    int setFisheyeParam(_TP_FISHEYEPARAM* param);
    int getPTZ2WindowPosition(int subId, _TP_PTZPARAM start, _TP_PTZPARAM from, _TP_PTZPARAM to, float* x,
                              float* y) const;

    // The boxes, in the engine's drawing or in ours.
    void delayHideFisheyeMark(); // five seconds more
    void hidePTZMarrk();
    void setPTZMarkParam(int type); // this window shows the boxes of the other views
    void hightLightPTZ();           // the box of this view

    void addFisheyeMark(int id, const _TP_PTZPARAM& position, bool visible);
    void setFisheyeMark(int id, const _TP_PTZPARAM& position, bool visible) override; // any thread
    _TP_PTZPARAM getFisheyeMarkPos(int id) const;                                     // the corner when there is none
    void clearDeviceExpandMark() { marks_.clear(); }

    int startScan(float step, int placeType);
    void scan(); // one step
    void stopScan() { scanTimer_.stop(); }
    int startCruise(std::vector<FisheyePTZCruise> list);
    int cruisePTZ(); // on to the next place
    void stopCruise() { cruiseTimer_.stop(); }

    void setPTZInfo(int type, _TP_PTZPARAM origin, _TP_PTZPARAM position, int id);

    void DrawFishWndId(void* drawContext) override;
    void DrawFishEyeBox(void* drawContext) override;

public slots:
    void setFisheyeMousePress(QMouseEvent* event);
    void setFisheyeMouseMove(QMouseEvent* event);
    void setFisheyeMouseRelease(QMouseEvent* event);
    void setFisheyeMouseWheel(QWheelEvent* event);

protected:
    void timerEvent(QTimerEvent* event) override;

private slots:
    void keepSize(QResizeEvent* event);

private:
    void connectMouse();
    void removePlayer();
    _TP_FISHEYEPARAM startParam(const _TP_FISHEYEPARAM& param) const;
    void marksTimedOut();

    bool takesPresses() const;
    void beginViewDrag();
    bool readPressedView(_TP_FISHEYEPARAM& param);
    void beginDeviceDrag();
    bool pickMark();
    void dragView(const _TP_PTZPARAM& at);
    void turnView(const _TP_PTZPARAM& at);
    void moveBox(const _TP_PTZPARAM& at);
    void moveView(const _TP_PTZPARAM& at);
    void updateView(int viewId, _TP_FISHEYEPARAM& param);
    void dragOnDevice(const _TP_PTZPARAM& at, unsigned long time);
    std::optional<int> reportedId() const;

    QWidget* const window_;
    QPointer<Player> player_; // of the view
    int realPlayId_ = 0;      // of the stream that the view belongs to
    int correctType_ = kCorrectView;
    FisheyePTZ windowPTZ_;
    FEC_COLOR color_;

    // Read by the draw and the listener thread too.
    std::atomic<bool> softwarePlay_{false};
    std::atomic<int> windowType_{FisheyeView};
    std::atomic<int> windowPTZId_{-1};
    std::atomic<int> width_;
    std::atomic<int> height_;
    FisheyeMarks marks_;

    int ptzMarkType_ = 0;     // 1 and more: this window shows the boxes of the other views
    int triggerMarkType_ = 0; // how the engine draws the boxes
    QBasicTimer markTimer_;   // hides the boxes

    // The drag.
    bool dragging_ = false;
    int dragId_ = -1; // the view or box that is dragged; negative for none
    _TP_PTZPARAM pressPosition_{};
    unsigned long pressTime_ = 0; // ms
    _TP_PTZPARAM pressParam_{};   // where the view looked
    float pressAngle_ = 0.0F;
    int trackId_ = 0; // counts drags
    int pointId_ = 1; // counts the reports of one

    QBasicTimer scanTimer_;
    _TP_PTZPARAM scanStart_{};
    float scanStep_ = 0.0F;
    int scanPlace_ = 0;

    QBasicTimer cruiseTimer_;
    std::vector<FisheyePTZCruise> cruiseList_;
    std::size_t cruiseCursor_ = 0;
};

} // namespace quillmark::lumen_deck
