#pragma once

#include "src/graphics/DrawTool.h"

namespace quillmark::lumen_deck {

class ToolLine : public ToolBase, public DrawSettings
{
    Q_OBJECT
public:
    ToolLine();

    std::shared_ptr<GraphicsBase> generate(const QPointF& from, const QPointF& to) const;

    int lineKind = 2;
    int sideDirection = 0;
    int crossDirection = 0;
};

ParsedTool parseToolLine(const QJsonObject& object);

} // namespace quillmark::lumen_deck
