#include "src/graphics/DrawVerbs.h"
#include "src/graphics/ShapeTable.h"
#include "src/interface/Export.h"

#include <algorithm>

namespace {

using namespace quillmark::lumen_deck;
using Error = std::shared_ptr<ErrorBase>;
using Answer = std::pair<Error, QJsonDocument>;
using Type = GraphicsBase::GraphicsType;

// Setting

template <class TypeOf> Error addEach(QWidget* mainWindow, const QJsonValue& entries, TypeOf typeOf)
{
    for (const QJsonValue& entry : entries.toArray()) {
        const QJsonObject object = entry.toObject();
        if (const Error error = addGraphics(mainWindow, object, typeOf(object)))
            return error;
    }
    return nullptr;
}

template <Type type> Error setShapes(QWidget* mainWindow, const QJsonDocument& args)
{
    return addEach(mainWindow, args.object()[shapeRow(type).key], [](const QJsonObject&) { return type; });
}

Error setLines(QWidget* mainWindow, const QJsonDocument& args)
{
    constexpr int kBroken = 2;
    return addEach(mainWindow, args.object()["lineInfo"], [](const QJsonObject& line) {
        return line["lineType"].toInt() == kBroken ? GraphicsBase::Breakline : GraphicsBase::Line;
    });
}

Error setGrid(QWidget* mainWindow, const QJsonDocument& args)
{
    return addGraphics(mainWindow, args.object()["gridInfo"].toObject(), GraphicsBase::Grid);
}

// What stands beside the overlays of a document counts for each of them.
QJsonObject withCommonFields(const QJsonObject& info, QJsonObject overlay)
{
    for (const char* const key : {"minMoveValue", "width", "height"}) {
        const QJsonValue value = info[key];
        if (!value.isUndefined() && !value.isNull())
            overlay[key] = value;
    }
    return overlay;
}

Error addOverlay(QWidget* mainWindow, const QJsonObject& info, const QJsonObject& overlay)
{
    return addGraphics(mainWindow, withCommonFields(info, overlay), GraphicsBase::Overlay);
}

// Free texts are taken one by one: a bad one does not keep the others out, and the last one decides the answer.
Error setTextOverlay(QWidget* mainWindow, const QJsonDocument& args)
{
    clearGraphics(mainWindow, GraphicsBase::Overlay);
    const QJsonObject info = args.object()["overlayInfo"].toObject();
    for (const char* const key : {"channelName", "date"}) {
        const QJsonObject overlay = info[key].toObject();
        if (overlay.isEmpty())
            continue;
        if (const Error error = addOverlay(mainWindow, info, overlay))
            return error;
    }
    Error last;
    for (const QJsonValue& text : info["text"].toArray())
        last = addOverlay(mainWindow, info, text.toObject());
    return last;
}

// Drawing

struct DrawWord
{
    const char* word;
    ToolBase::ToolType tool;
};

constexpr DrawWord kDrawWords[] = {
    {"Rect", ToolBase::Rectangle},
    {"Polygon", ToolBase::Polygon},
    {"Line", ToolBase::Breakline},
    {"Point", ToolBase::Point},
};

Error setDrawShape(QWidget* mainWindow, const QJsonDocument& args)
{
    const QJsonObject request = args.object();
    const QString word = request["drawType"].toString();
    if (word == QLatin1String("Grid"))
        return addGraphics(mainWindow, {}, GraphicsBase::Grid);
    const auto* const row = std::find_if(std::begin(kDrawWords), std::end(kDrawWords),
                                         [&](const DrawWord& r) { return word == QLatin1String(r.word); });
    if (row == std::end(kDrawWords))
        return nullptr;
    return setTool(mainWindow, request["drawInfo"].toObject(), row->tool);
}

Error setStatus(QWidget* mainWindow, const QJsonDocument& args)
{
    return setDrawStatus(mainWindow, args.object());
}

Error setCallback(QWidget* mainWindow, const QJsonDocument& args)
{
    return setDrawCallback(mainWindow, args.object());
}

// Reading

template <Type type> Answer getShapes(QWidget* mainWindow)
{
    const auto [error, shapes] = queryGraphics(mainWindow, type);
    if (error)
        return {error, {}};
    return {nullptr, QJsonDocument(QJsonObject{{shapeRow(type).key, *shapes}})};
}

Answer getLines(QWidget* mainWindow)
{
    QJsonArray lines;
    for (const Type type : {GraphicsBase::Line, GraphicsBase::Breakline}) {
        const auto [error, shapes] = queryGraphics(mainWindow, type);
        if (error)
            return {error, {}};
        for (const QJsonValue& shape : *shapes)
            lines.append(shape);
    }
    return {nullptr, QJsonDocument(QJsonObject{{"lineInfo", lines}})};
}

Answer getGrid(QWidget* mainWindow)
{
    const auto [error, grids] = queryGraphics(mainWindow, GraphicsBase::Grid);
    if (error)
        return {error, {}};
    return {nullptr, QJsonDocument(grids->isEmpty() ? QJsonObject() : QJsonObject{{"gridInfo", grids->first()}})};
}

Answer getTextOverlay(QWidget* mainWindow)
{
    const auto [error, overlays] = queryGraphics(mainWindow, GraphicsBase::Overlay);
    if (error)
        return {error, {}};
    QJsonObject info;
    QJsonArray texts;
    for (const QJsonValue& overlay : *overlays) {
        if (overlay.toObject().contains("name"))
            info["channelName"] = overlay;
        else if (overlay.toObject().contains("timeFormat"))
            info["date"] = overlay;
        else
            texts.append(overlay);
    }
    info["text"] = texts;
    return {nullptr, QJsonDocument(QJsonObject{{"overlayInfo", info}})};
}

// Clearing and selecting, by the words of the shape table

template <class Act> void forEachType(const QString& word, Act act)
{
    for (const ShapeRow& row : kShapes) {
        if (row.word && word == QLatin1String(row.word))
            act(row.type);
    }
}

QString typeWord(const QJsonDocument& args)
{
    return args.object()["type"].toString().toLower();
}

Error clearAll(QWidget* mainWindow)
{
    return clearGraphics(mainWindow, GraphicsBase::Any);
}

QJsonDocument* clearByType(QWidget* mainWindow, const QJsonDocument& args)
{
    const QString word = typeWord(args);
    const QJsonArray ids = args.object()["id"].toArray();
    if (word == QLatin1String("choosed"))
        return dealResult(QJsonObject{{"clearedShapeId", clearSelectedGraphic(mainWindow)}});
    if (word == QLatin1String("all"))
        clearAll(mainWindow);
    if (word == QLatin1String("allwindows"))
        clearAllWindowsGraphics(mainWindow, GraphicsBase::Any);
    forEachType(word, [&](Type type) {
        if (ids.isEmpty() || type == GraphicsBase::Grid) // there is one grid at most
            clearGraphics(mainWindow, type);
        else
            clearGraphics(mainWindow, ids, type);
    });
    return nullptr;
}

void clearById(QWidget* mainWindow, const QJsonDocument& args)
{
    const QString word = typeWord(args);
    const QJsonArray ids = args.object()["id"].toArray();
    if (word == QLatin1String("all"))
        clearGraphics(mainWindow, ids, GraphicsBase::Any);
    forEachType(word, [&](Type type) { clearGraphics(mainWindow, ids, type); });
}

void selectShape(QWidget* mainWindow, const QJsonDocument& args)
{
    const QVariant id = args.object()["id"].toVariant();
    forEachType(typeWord(args), [&](Type type) {
        if (type != GraphicsBase::Grid) // a grid has nothing to show for it
            selectGraphic(mainWindow, id, type);
    });
}

} // namespace

LUMEN_EXPORT_WD(LD_SetRectInfo, setShapes<GraphicsBase::Rectangle>)
LUMEN_EXPORT_WD(LD_SetPointInfo, setShapes<GraphicsBase::Point>)
LUMEN_EXPORT_WD(LD_SetPolygonInfo, setShapes<GraphicsBase::Polygon>)
LUMEN_EXPORT_WD(LD_SetDrawStatus, setStatus)
LUMEN_EXPORT_WD(LD_SetTextOverlay, setTextOverlay)
LUMEN_EXPORT_WD(LD_SetLineInfo, setLines)
LUMEN_EXPORT_WD(LD_ClearShapeByType, clearByType)
LUMEN_EXPORT_WD(LD_ClearShapeById, clearById)
LUMEN_EXPORT_WD(LD_SelectShape, selectShape)
LUMEN_EXPORT_WD(LD_SetDrawCallback, setCallback)
LUMEN_EXPORT_WD(LD_SetDrawShapeInfo, setDrawShape)
LUMEN_EXPORT_WD(LD_SetGridInfo, setGrid)
LUMEN_EXPORT_W(LD_GetPolygonInfo, getShapes<GraphicsBase::Polygon>)
LUMEN_EXPORT_W(LD_GetTextOverlay, getTextOverlay)
LUMEN_EXPORT_W(LD_GetLineInfo, getLines)
LUMEN_EXPORT_W(LD_ClearGraphics, clearAll)
LUMEN_EXPORT_W(LD_GetPointInfo, getShapes<GraphicsBase::Point>)
LUMEN_EXPORT_W(LD_GetRectInfo, getShapes<GraphicsBase::Rectangle>)
LUMEN_EXPORT_W(LD_GetGridInfo, getGrid)
