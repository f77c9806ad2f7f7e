#pragma once

#include "src/graphics/DrawTool.h"

namespace quillmark::lumen_deck {

class ToolRectangle : public ToolBase, public DrawSettings
{
    Q_OBJECT
public:
    ToolRectangle();

    std::shared_ptr<GraphicsBase> generate(const QRectF& rectangle) const;

    QVariant fillColor;            // a QColor when the rectangle is to be filled
    double widthHeightRate = -1.0; // height to width; 0 or less: free
    double tipsPos = 0.0;
};

ParsedTool parseToolRectangle(const QJsonObject& object); // never fails

} // namespace quillmark::lumen_deck
