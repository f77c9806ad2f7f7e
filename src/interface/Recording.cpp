#include "src/player/Recording.h"

#include "src/interface/Export.h"

namespace {

using namespace quillmark::lumen_deck;

std::shared_ptr<ErrorBase> nameAndStart(QWidget* mainWindow, const QJsonDocument& args)
{
    const auto [error, named] = nameRecording(args);
    return error ? error : startSave(mainWindow, named);
}

} // namespace

LUMEN_EXPORT_WD(LD_StartSave, nameAndStart)
LUMEN_EXPORT_WD(LD_StopSave, stopSave)
