#include "src/graphics/DrawVerbs.h"
#include "src/interface/Export.h"

namespace {

using namespace quillmark::lumen_deck;

void setDrawing(QWidget* mainWindow, bool enable)
{
    const QJsonDocument status(QJsonObject{{"enable", enable}});
    LD_Release(LD_SetDrawStatus(mainWindow, &status));
}

std::shared_ptr<ErrorBase> enableEZoom(QWidget* mainWindow, const QJsonDocument& args)
{
    setDrawing(mainWindow, true);
    return setTool(mainWindow, args.object(), ToolBase::Zoom);
}

std::shared_ptr<ErrorBase> disableEZoom(QWidget* mainWindow)
{
    setDrawing(mainWindow, false);
    return setTool(mainWindow, {}, ToolBase::None);
}

} // namespace

LUMEN_EXPORT_WD(LD_EnableEZoom, enableEZoom)
LUMEN_EXPORT_W(LD_DisableEZoom, disableEZoom)
