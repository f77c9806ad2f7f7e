#pragma once

#include "src/graphics/DrawTool.h"
#include "src/graphics/GraphicsView.h"

// What the host is told of shapes that the user draws and picks. Main thread.
namespace quillmark::lumen_deck::detail {

// The shape's whole document: a drawing in callback mode.
void reportShape(const GraphicsView* view, const GraphicsView::Shape& shape);

// A drawing has ended: the whole shape in callback mode, else its id and type.
void reportFinished(const GraphicsView* view, const GraphicsView::Shape& shape, const DrawSettings& settings);

// The user has picked the shape. Points, grids and overlays are not reported.
void reportChosen(const GraphicsView* view, const GraphicsView::Shape& shape);

} // namespace quillmark::lumen_deck::detail
