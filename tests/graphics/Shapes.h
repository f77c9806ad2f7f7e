#pragma once

#include "src/LayoutDetail.h"
#include "src/graphics/GraphicsArrow.h"
#include "src/graphics/GraphicsGrid.h"
#include "src/graphics/GraphicsLine.h"
#include "src/graphics/GraphicsOverlay.h"
#include "src/graphics/GraphicsPoint.h"
#include "src/graphics/GraphicsRectangle.h"
#include "src/graphics/GraphicsView.h"
#include "src/graphics/ShapeTable.h"
#include "tests/support/Documents.h"

#include <gmock/gmock.h>

// Shapes from documents, and a view to put them in.
namespace shapes {

using namespace quillmark::lumen_deck;
using namespace documents;
using G = GraphicsBase;

inline ParsedGraphics parse(G::GraphicsType type, const QByteArray& text)
{
    return shapeRow(type).parse(object(text));
}

// A finished shape; a null pointer when the document is refused.
template <class Shape> std::shared_ptr<Shape> make(G::GraphicsType type, const QByteArray& text)
{
    const auto shape = std::dynamic_pointer_cast<Shape>(parse(type, text).second);
    if (shape)
        shape->creating = false;
    return shape;
}

inline std::shared_ptr<GraphicsBase> make(G::GraphicsType type, const QByteArray& text)
{
    return make<GraphicsBase>(type, text);
}

class Window
{
public:
    explicit Window(QSize size)
        : window_(MakePlayWindow())
    {
        window_->resize(size);
        view_ = static_cast<detail::GraphicsView*>(UseGraphicsView(window_.get()));
    }

    IPlayWindow& operator*() const { return *window_; }
    detail::GraphicsView* operator->() const { return view_; }

private:
    std::unique_ptr<IPlayWindow> window_;
    detail::GraphicsView* view_;
};

} // namespace shapes
