#include "src/graphics/ToolBreakline.h"
#include "src/graphics/ToolLine.h"
#include "src/graphics/ToolPoint.h"
#include "src/graphics/ToolPolygon.h"
#include "src/graphics/ToolRectangle.h"
#include "src/graphics/ToolZoom.h"

#include <QJsonDocument>

#include <gtest/gtest.h>

namespace {

using namespace quillmark::lumen_deck;

QJsonObject json(const char* text)
{
    return QJsonDocument::fromJson(text).object();
}

std::string errorOf(const ParsedTool& parsed)
{
    return parsed.first ? parsed.first->toJson()["errorMessage"].toString().toStdString() : "";
}

template <class Tool> std::shared_ptr<Tool> toolOf(const ParsedTool& parsed)
{
    return std::static_pointer_cast<Tool>(parsed.second);
}

constexpr const char* kBadTips = "error retrieving an optional field tips, type mismatch, required type is string";

TEST(ToolDocuments, refuseWhatTheirToolCannotDo)
{
    struct Row
    {
        ParsedTool (*parse)(const QJsonObject&);
        const char* document;
        const char* message;
    };
    const Row rows[] = {
        {parseToolPolygon, R"({"maxPointSupport":2})", "can not set polygon max points less than 3"},
        {parseToolPolygon, R"({"maxPointSupport":3,"minPointSupport":2})",
         "can not set polygon min points less than 3"},
        {parseToolPolygon, R"({"maxPointSupport":5,"minPointSupport":6})",
         "can not set polygon max points less than min points"},
        {parseToolPolygon, R"({"minPointSupport":3})", "can not set polygon max points less than min points"},
        {parseToolBreakline, R"({"maxPointSupport":1})", "can not set line max points less than 2"},
        {parseToolBreakline, R"({"minPointSupport":1})", "can not set line min points less than 2"},
        {parseToolBreakline, R"({"minPointSupport":3})", "can not set line max points less than min points"},
        {parseToolLine, R"({"drawColor":"#nonsense"})",
         "error retrieving an optional field drawColor, type mismatch, required type is color"},
        {parseToolLine, R"({"tips":5})", kBadTips},
        {parseToolPoint, R"({"tips":5})", kBadTips},
        {parseToolPoint, R"({"drawColor":"#nonsense"})", ""},
        {parseToolPolygon, R"({"tips":5,"drawColor":7,"showWH":"yes"})", ""},
        {parseToolBreakline, R"({"tips":5,"maxPointSupport":2})", ""},
        {parseToolRectangle, R"({"tips":5,"id":"x","widthHeightRate":"x","maxShapeSupport":1e300})", ""},
        {parseToolZoom, R"({"type":"x"})", ""},
    };
    for (const Row& row : rows) {
        const ParsedTool parsed = row.parse(json(row.document));
        EXPECT_EQ(errorOf(parsed), row.message) << row.document;
        EXPECT_EQ(parsed.second != nullptr, *row.message == '\0') << row.document;
    }
    for (const auto parse :
         {parseToolPolygon, parseToolBreakline, parseToolLine, parseToolPoint, parseToolRectangle, parseToolZoom})
        EXPECT_TRUE(parse({}).second);
}

TEST(ToolDocuments, readEachKeyInItsOwnWay)
{
    const auto fill = [](const char* document) {
        return toolOf<ToolPolygon>(parseToolPolygon(json(document)))->fillColor.isValid();
    };
    EXPECT_TRUE(fill(R"({"fillColor":"red"})"));
    EXPECT_FALSE(fill(R"({"fillColor":"red","translucent":0.5})"));

    EXPECT_EQ(toolOf<ToolPoint>(parseToolPoint({}))->id, 1);
    EXPECT_EQ(toolOf<ToolPoint>(parseToolPoint(json(R"({"type":"circle"})")))->pointType, 0);
    EXPECT_EQ(toolOf<ToolPoint>(parseToolPoint(json(R"({"type":"star"})")))->pointType, 1);

    EXPECT_EQ(toolOf<ToolBreakline>(parseToolBreakline({}))->maxPointSupport, 2);
    EXPECT_EQ(toolOf<ToolRectangle>(parseToolRectangle(json(R"({"widthHeightRate":0})")))->widthHeightRate, -1.0);
    EXPECT_TRUE(toolOf<ToolRectangle>(parseToolRectangle(json(R"({"redrawMode":1})")))->redraw);
    EXPECT_FALSE(toolOf<ToolRectangle>(parseToolRectangle(json(R"({"redrawMode":2})")))->redraw);

    EXPECT_TRUE(toolOf<ToolZoom>(parseToolZoom({}))->dragRectangle);
    EXPECT_FALSE(toolOf<ToolZoom>(parseToolZoom(json(R"({"type":2})")))->dragRectangle);
}

TEST(ToolDocuments, aLineTakesItsDirectionFromItsType)
{
    struct Row
    {
        const char* document;
        int cross;
        int side;
    };
    for (const Row& row : {Row{R"({"lineType":3,"direction":1})", 2, 0}, Row{R"({"lineType":3,"direction":2})", 3, 0},
                           Row{R"({"lineType":3,"direction":9})", 1, 0}, Row{R"({"lineType":1,"direction":1})", 0, 2},
                           Row{R"({"lineType":4,"direction":2})", 0, 1}, Row{R"({"lineType":2,"direction":1})", 0, 0},
                           Row{R"({"direction":1})", 0, 0}}) {
        const auto tool = toolOf<ToolLine>(parseToolLine(json(row.document)));
        EXPECT_EQ(tool->crossDirection, row.cross) << row.document;
        EXPECT_EQ(tool->sideDirection, row.side) << row.document;
    }
}

} // namespace
