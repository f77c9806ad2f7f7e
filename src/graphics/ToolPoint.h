#pragma once

#include "src/graphics/DrawTool.h"

namespace quillmark::lumen_deck {

class ToolPoint : public ToolBase, public DrawSettings
{
    Q_OBJECT
public:
    ToolPoint();

    std::shared_ptr<GraphicsBase> generate(const QPointF& position) const;

    int pointType = 0; // 0 circle, 1 cross
};

ParsedTool parseToolPoint(const QJsonObject& object);

} // namespace quillmark::lumen_deck
