#pragma once

#include "src/util/Errors.h"

#include <QObject>

#include <memory>

class QJsonDocument;
class QWidget;

namespace quillmark::lumen_deck {

// The operation that a fisheye request asks for.
enum FisheyeModuleInterface : int
{
    FisheyeSetCorrectionType = 0,
    FisheyeSetPlaceType = 1,
    FisheyeArrange = 2,
    FisheyePlay = 3,
    FisheyeStop = 4,
    FisheyeStep = 5,
    FisheyeSetPreset = 7,
    FisheyeStartScan = 8,
    FisheyeStopScan = 9,
    FisheyeStartCruise = 10,
    FisheyeStopCruise = 11,
    FisheyeStartListener = 12,
    FisheyeStopListener = 13,
    FisheyeSetBoxes = 14,
    FisheyeClearBoxes = 15,
    FisheyeSetWindow = 16
};

// What the streams ask of the fisheye module, a direct child of the main widget. Main thread only.
class IFisheyeModule : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    virtual int getCorrectionType() const = 0;
    virtual QWidget* getSoftwarePlayRealWindow() const = 0; // null before the first software-corrected play
    virtual int getSubWindowPlayerId(int index) = 0;        // -1 when there is none
    virtual void resetParam(int index) = 0;
    virtual std::shared_ptr<ErrorBase> setJsonParam(FisheyeModuleInterface operation, const QJsonDocument& request) = 0;
};

// Null while the main widget has no module, which means the same as a module with default settings.
IFisheyeModule* findFisheyeModule(const QWidget* mainWindow);
int correctionTypeOf(const QWidget* mainWindow);

} // namespace quillmark::lumen_deck
