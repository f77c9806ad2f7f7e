#include "src/eagleeyemodule.h"

#include "src/interface/Export.h"

namespace {

using namespace quillmark::lumen_deck;

std::shared_ptr<ErrorBase> prepare(QWidget* mainWindow, const QJsonDocument& args)
{
    EagleEyeModule* module = getEagleEyeInstance(mainWindow, args);
    if (!module)
        return constructJsonError("SRInit cannot find eagleEye in the window", args, LUMEN_HERE);
    return module->setEagleEyeExpandType(args);
}

std::shared_ptr<ErrorBase> step(QWidget* mainWindow, const QJsonDocument& args)
{
    EagleEyeModule* module = getEagleEyeInstance(mainWindow, args);
    if (!module)
        return constructJsonError("SRPTZ cannot find eagleEye in the window", args, LUMEN_HERE);
    return module->setEagleEyePTZ(args);
}

} // namespace

LUMEN_EXPORT_WD(LD_SRInit, prepare)
LUMEN_EXPORT_WD(LD_SRPTZ, step)
