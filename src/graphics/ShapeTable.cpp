#include "src/graphics/ShapeTable.h"

#include "src/graphics/GraphicsRectangle.h"

#include <algorithm>

namespace quillmark::lumen_deck {

const std::array<ShapeRow, 1> kShapes{{
    {GraphicsBase::Rectangle, "rect", "rectInfo", parseRectangle, GraphicsBase::Polygon, nullptr},
}};

const ShapeRow& shapeRow(GraphicsBase::GraphicsType type)
{
    const auto row = std::find_if(kShapes.begin(), kShapes.end(), [&](const ShapeRow& r) { return r.type == type; });
    Q_ASSERT(row != kShapes.end());
    return *row;
}

} // namespace quillmark::lumen_deck
