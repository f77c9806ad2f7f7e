#include "src/graphics/ToolTable.h"

#include "src/graphics/ShapeParts.h"
#include "src/graphics/ToolBreakline.h"
#include "src/graphics/ToolLine.h"
#include "src/graphics/ToolPoint.h"
#include "src/graphics/ToolPolygon.h"
#include "src/graphics/ToolRectangle.h"
#include "src/graphics/ToolZoom.h"
#include "src/util/JsonUtil.h"

#include <algorithm>

namespace quillmark::lumen_deck {
namespace {

ParsedTool noTool(const QJsonObject&)
{
    return {};
}

struct ToolRow
{
    ToolBase::ToolType type;
    ParsedTool (*parse)(const QJsonObject& object);
};

constexpr ToolRow kTools[] = {
    {ToolBase::None, noTool},
    {ToolBase::Zoom, parseToolZoom},
    {ToolBase::Line, parseToolLine},
    {ToolBase::Rectangle, parseToolRectangle},
    {ToolBase::Polygon, parseToolPolygon},
    {ToolBase::Point, parseToolPoint},
    {ToolBase::Breakline, parseToolBreakline},
};

// Tools of the callback mode, as far as they differ from fresh ones.

template <class Tool> ParsedTool arm(const std::shared_ptr<Tool>& tool, const QColor& color)
{
    tool->id = kCallbackId;
    tool->drawColor = color;
    tool->callbackMode = true;
    tool->redraw = true;
    return {nullptr, tool};
}

template <class Tool> ParsedTool plainTool(const QJsonObject&, const QColor& color)
{
    return arm(std::make_shared<Tool>(), color);
}

ParsedTool quadrangleTool(const QJsonObject&, const QColor& color)
{
    constexpr int kCorners = 4;
    auto tool = std::make_shared<ToolPolygon>();
    tool->maxPointSupport = kCorners;
    tool->minPointSupport = kCorners;
    return arm(tool, color);
}

ParsedTool pointTool(const QJsonObject& object, const QColor& color)
{
    const auto [error, drawType] = parseRequired<QString>(object, "drawType");
    if (error)
        return {error, nullptr};
    auto tool = std::make_shared<ToolPoint>();
    tool->pointType = drawType.toString() == QLatin1String("cross") ? 1 : 0;
    return arm(tool, color);
}

struct CallbackRow
{
    const char* word;
    ParsedTool (*make)(const QJsonObject& object, const QColor& color);
};

constexpr CallbackRow kCallbackTools[] = {
    {"Rect", plainTool<ToolRectangle>},
    {"Polygon", quadrangleTool},
    {"Line", plainTool<ToolLine>},
    {"Point", pointTool},
};

// A shape that is not to be displayed goes as soon as it has been reported.
std::shared_ptr<ErrorBase> readDisplay(const QJsonObject& object, ToolBase& tool)
{
    const auto [error, display] = parseOptional<bool>(object, "display");
    if (!error && display.isValid())
        tool.hideOnFinish = !display.toBool();
    return error;
}

} // namespace

ParsedTool parseTool(const QJsonObject& object, ToolBase::ToolType type)
{
    const auto* const row =
        std::find_if(std::begin(kTools), std::end(kTools), [type](const ToolRow& r) { return r.type == type; });
    Q_ASSERT(row != std::end(kTools));
    return row->parse(object);
}

ParsedTool parseCallbackTool(const QJsonObject& object)
{
    QColor color = Qt::yellow;
    readColor(object, "drawColor", color);
    const auto [error, word] = parseRequired<QString>(object, "type");
    if (error)
        return {error, nullptr};
    const auto* const row =
        std::find_if(std::begin(kCallbackTools), std::end(kCallbackTools),
                     [&word = word](const CallbackRow& r) { return word.toString() == QLatin1String(r.word); });
    if (row == std::end(kCallbackTools))
        return {constructJsonError(QStringLiteral("error setDrawCallback, can not decide which tool to use"), object,
                                   LUMEN_HERE),
                nullptr};
    const ParsedTool parsed = row->make(object, color);
    if (parsed.first)
        return parsed;
    if (const auto displayError = readDisplay(object, *parsed.second))
        return {displayError, nullptr};
    return parsed;
}

} // namespace quillmark::lumen_deck
