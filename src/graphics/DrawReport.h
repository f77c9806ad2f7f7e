#pragma once

#include "src/graphics/DrawTool.h"
#include "src/graphics/GraphicsView.h"

// What the host is told of shapes that the user draws and picks. The host may delete the wall meanwhile: each answers
// whether the view is still there. Main thread.
namespace quillmark::lumen_deck::detail {

// The shape's whole document: a drawing in callback mode.
[[nodiscard]] bool reportShape(GraphicsView* view, const GraphicsView::Shape& shape);

// A drawing has ended: the whole shape in callback mode, else its id and type.
[[nodiscard]] bool reportFinished(GraphicsView* view, const GraphicsView::Shape& shape, const DrawSettings& settings);

// The user has picked the shape. Points, grids and overlays are not reported.
[[nodiscard]] bool reportChosen(GraphicsView* view, const GraphicsView::Shape& shape);

} // namespace quillmark::lumen_deck::detail
