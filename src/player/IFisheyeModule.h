#pragma once

#include "src/util/Errors.h"

#include <QObject>

#include <memory>

class QJsonDocument;
class QWidget;

namespace quillmark::lumen_deck {

// The operation that a fisheye request asks for; the fisheye module knows the rest of the list.
enum FisheyeModuleInterface : int
{
    FisheyePlay = 3,
    FisheyeStop = 4
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
