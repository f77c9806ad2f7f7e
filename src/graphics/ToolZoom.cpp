#include "src/graphics/ToolZoom.h"

#include "src/graphics/GraphicsRectangle.h"

namespace quillmark::lumen_deck {

ToolZoom::ToolZoom()
    : ToolBase(Zoom, "Zoom")
{
    hideOnFinish = true;
}

std::shared_ptr<GraphicsBase> ToolZoom::generate(const QRectF& rectangle) const
{
    auto frame = std::make_shared<GraphicsRectangle>(rectangle);
    frame->temporary = true;
    return frame;
}

ParsedTool parseToolZoom(const QJsonObject& object)
{
    constexpr int kDragMode = 2;
    auto tool = std::make_shared<ToolZoom>();
    tool->dragRectangle = object["type"].toInt() != kDragMode;
    return {nullptr, tool};
}

} // namespace quillmark::lumen_deck
