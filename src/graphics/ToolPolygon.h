#pragma once

#include "src/graphics/DrawTool.h"

namespace quillmark::lumen_deck {

class ToolPolygon : public ToolBase, public DrawSettings
{
    Q_OBJECT
public:
    ToolPolygon();

    std::shared_ptr<GraphicsBase> generate(std::vector<QPointF> points) const;

    int maxPointSupport = 11;
    int minPointSupport = 3;
    QVariant fillColor; // a QColor when the polygon is to be filled
    bool showWH = false;
};

ParsedTool parseToolPolygon(const QJsonObject& object);

} // namespace quillmark::lumen_deck
