#pragma once

#include "src/graphics/GraphicsBase.h"

#include <array>

namespace quillmark::lumen_deck {

// One row for each type of shape that a view can hold; the verbs and the view walk the rows in order.
struct ShapeRow
{
    GraphicsBase::GraphicsType type;
    const char* word; // names the type in the verbs that clear and select; null: no such verb knows it
    const char* key;  // of the documents that set and report
    ParsedGraphics (*parse)(const QJsonObject& object);
    GraphicsBase::GraphicsType family; // takes a slot by id from this type too, and is cleared by id with it
    bool (*sameSlot)(const GraphicsBase& shape,
                     const GraphicsBase& other); // only one of both fits in a view; null: any
};

extern const std::array<ShapeRow, 7> kShapes;

const ShapeRow& shapeRow(GraphicsBase::GraphicsType type); // a type that a view can hold

} // namespace quillmark::lumen_deck
