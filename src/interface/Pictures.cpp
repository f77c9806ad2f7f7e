#include "src/interface/Export.h"
#include "src/player/Capture.h"

namespace {

using namespace quillmark::lumen_deck;

QJsonDocument* capture(QWidget* mainWindow, const QJsonDocument* named)
{
    return dealResult(snapshot(mainWindow, *named));
}

// The file gets its name on the caller's thread; only the capture is queued.
QJsonDocument* nameAndCapture(QWidget* mainWindow, const QJsonDocument& args)
{
    const auto [error, named] = nameSnapshot(args);
    return error ? dealResult(error) : makeCall(capture, mainWindow, &named);
}

} // namespace

LUMEN_EXPORT_WD(LD_GetOSDTime, getOSDTime)
LUMEN_EXPORT_WD(LD_Snapshot, nameAndCapture)
