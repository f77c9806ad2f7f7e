#include "src/graphics/ShapeTable.h"

#include "src/graphics/GraphicsBreakline.h"
#include "src/graphics/GraphicsGrid.h"
#include "src/graphics/GraphicsLine.h"
#include "src/graphics/GraphicsOverlay.h"
#include "src/graphics/GraphicsPoint.h"
#include "src/graphics/GraphicsPolygon.h"
#include "src/graphics/GraphicsRectangle.h"

#include <algorithm>

namespace quillmark::lumen_deck {
namespace {

using G = GraphicsBase;

bool oneGridOnly(const GraphicsBase&, const GraphicsBase& other)
{
    return other.type() == G::Grid;
}

// A window has one channel name and one date.
bool sameKindOfOverlay(const GraphicsBase& shape, const GraphicsBase& other)
{
    const int kind = static_cast<const GraphicsOverlay&>(shape).kind;
    return other.type() == G::Overlay && kind != GraphicsOverlay::FreeText &&
           static_cast<const GraphicsOverlay&>(other).kind == kind;
}

} // namespace

const std::array<ShapeRow, 7> kShapes{{
    {G::Line, "line", "lineInfo", parseLine, G::Line, nullptr},
    {G::Breakline, "line", "lineInfo", parseBreakline, G::Line, nullptr},
    {G::Rectangle, "rect", "rectInfo", parseRectangle, G::Polygon, nullptr},
    {G::Polygon, "polygon", "polygonInfo", parsePolygon, G::Polygon, nullptr},
    {G::Point, "point", "pointInfo", parsePoint, G::Point, nullptr},
    {G::Grid, "grid", "gridInfo", parseGrid, G::Grid, oneGridOnly},
    {G::Overlay, nullptr, "overlayInfo", parseOverlay, G::Overlay, sameKindOfOverlay},
}};

const ShapeRow& shapeRow(GraphicsBase::GraphicsType type)
{
    const auto row = std::find_if(kShapes.begin(), kShapes.end(), [&](const ShapeRow& r) { return r.type == type; });
    Q_ASSERT(row != kShapes.end());
    return *row;
}

} // namespace quillmark::lumen_deck
