#pragma once

#include "src/graphics/DrawTool.h"

namespace quillmark::lumen_deck {

class ToolBreakline : public ToolBase, public DrawSettings
{
    Q_OBJECT
public:
    ToolBreakline();

    std::shared_ptr<GraphicsBase> generate(std::vector<QPointF> points) const;

    int maxPointSupport = 11;
    int minPointSupport = 2;
    int direction = 0; // 0 none, 1 or 2 a side
};

// A document without limits asks for a line of two points.
ParsedTool parseToolBreakline(const QJsonObject& object);

} // namespace quillmark::lumen_deck
