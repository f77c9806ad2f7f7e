#pragma once

#include "src/fisheye/FisheyeListener.h"
#include "src/fisheye/FisheyeTypes.h"
#include "src/player/IFisheyeModule.h"

#include <QJsonDocument>
#include <QPointer>
#include <QString>
#include <QVector>
#include <QWidget>

#include <memory>
#include <set>

struct _TP_FISHEYEPARAM;

namespace quillmark::lumen_deck {

class FisheyeWindow;

// How a wall shows a round picture: a direct child of the main widget, from the first fisheye request until
// LD_StopRealPlayAll. Numbers that operations answer are 0 or, for a failure, negative. Main thread only.
class FisheyeModule : public IFisheyeModule
{
    Q_OBJECT
public:
    explicit FisheyeModule(QWidget* mainWindow);
    ~FisheyeModule() override; // ends the hidden stream with its views, and the listeners

    std::shared_ptr<ErrorBase> setJsonParam(FisheyeModuleInterface operation, const QJsonDocument& document) override;

    int getCorrectionType() const override { return correctionType_; }
    QWidget* getSoftwarePlayRealWindow() const override { return realWindow_; }
    int getSubWindowPlayerId(int index) override;
    int getFisheyeRealPlayerId() const; // -1 when there is none
    void resetParam(int index) override;

    FisheyeWindow* getSubWindowByReference(int index); // made where the window has none; null for no such window
    int getSelectedSubWindowIndex(const QWidget* window);

    void setCorrectionType(int type); // ignores what is none
    void setPlaceType(qint64 type);   // likewise
    int parseFisheyeWindowArrange(const QJsonDocument& document);
    int play(const QJsonDocument& document);
    int stop(const QJsonDocument& document);
    int setSubWindowParam(int index, int type, int id); // the role of a device's window

    int setFisheyePTZ(int index, unsigned direction, unsigned speed); // a PTZType; 0 to 7
    int startFisheyeScan(int index, int speed);
    int stopFisheyeScan();
    int startFisheyeCruise(int index, const QJsonDocument& document);
    int stopFisheyeCruise();
    int setSubWindowPTZParam(int index, const QJsonDocument& document);
    QJsonDocument getSubWindowPTZParam(int index); // empty for no view
    QJsonDocument getSubWindowPTZParam();          // of the selected window
    QJsonDocument getPTZList();

    int startFisheyeListener(const QString& url, const QString& auth, const QString& extData);
    int stopFisheyeListener();
    int addFisheyeWindowMark(int index, const QJsonDocument& document);
    int clearFisheyeWindowMark(int index);
    int originWindowIndex() const { return listener_->originWindowIndex; } // -1 for none
    int selectedSubWindow();

    float fisheyeValueToSetp(int kind, int speed) const; // see StepKind; 0 for a speed outside 1 to 7

    enum StepKind
    {
        ScanStep = 0,
        ZoomStep = 1,
        LookStep = 2,
        TurnStep = 3
    };

private:
    FisheyeWindow* findSubWindow(int index) const; // null where none has been made
    QVector<FisheyeWindow*> companions() const;
    void resetFisheyeSubWindow();
    void initFisheyeSubWindow();
    int fisheyeRealPlay(const QJsonDocument& document);
    int fisheyeSubWindowPlay();
    bool playSubWindow(int index, int realPlayId); // false when the windows behind it are not played
    int zoomView(FisheyeWindow& window, float oldZoom, unsigned direction, int speed);
    int turnView(FisheyeWindow& window, _TP_FISHEYEPARAM& param, unsigned direction, int speed);
    int lookAside(FisheyeWindow& window, _TP_FISHEYEPARAM& param, unsigned direction, int speed);

    QWidget* const mainWindow_;
    QPointer<QWidget> realWindow_; // holds the stream that the views show; never shown itself
    int correctionType_ = DeviceExpansion;
    int placeType_ = kPlaceCeiling;
    int arrangeType_ = 0;
    int subWindowCount_ = 1;
    int listenerId_ = -1;                         // of the last one started
    std::set<int> listeners_;                     // that run
    QVector<QPointer<FisheyeWindow>> companions_; // that were asked for, parked ones too
    const std::shared_ptr<FisheyeListenerState> listener_;
};

// The module of a main widget, made where there is none; null for no widget.
FisheyeModule* getFisheyeInstance(QWidget* mainWindow);

} // namespace quillmark::lumen_deck
