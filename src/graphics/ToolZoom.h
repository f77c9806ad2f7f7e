#pragma once

#include "src/graphics/DrawTool.h"

namespace quillmark::lumen_deck {

// The electronic zoom of one window and all it remembers.
class ToolZoom : public ToolBase
{
    Q_OBJECT
public:
    ToolZoom();

    std::shared_ptr<GraphicsBase> generate(const QRectF& rectangle) const; // the frame that the user drags

    bool dragRectangle = true;             // a dragged frame zooms; otherwise a drag pans and the wheel zooms
    QRectF zoomRegion{0.0, 0.0, 1.0, 1.0}; // of the whole picture, on show now: what the engine accepted last
};

ParsedTool parseToolZoom(const QJsonObject& object); // never fails

} // namespace quillmark::lumen_deck
