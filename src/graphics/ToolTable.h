#pragma once

#include "src/graphics/DrawTool.h"

namespace quillmark::lumen_deck {

// The tool of a document. No tool and no error for None.
ParsedTool parseTool(const QJsonObject& object, ToolBase::ToolType type);

// The tool of a document that asks for drawing in callback mode.
ParsedTool parseCallbackTool(const QJsonObject& object);

} // namespace quillmark::lumen_deck
