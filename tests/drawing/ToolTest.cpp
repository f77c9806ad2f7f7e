#include "src/graphics/ToolBreakline.h"
#include "src/graphics/ToolLine.h"
#include "src/graphics/ToolPoint.h"
#include "src/graphics/ToolPolygon.h"
#include "src/graphics/ToolRectangle.h"
#include "src/graphics/ToolZoom.h"
#include "tests/support/Documents.h"

#include <gtest/gtest.h>

using namespace quillmark::lumen_deck;
using namespace documents;

template <class Tool> std::shared_ptr<Tool> toolOf(const ParsedTool& parsed)
{
    return std::static_pointer_cast<Tool>(parsed.second);
}

TEST(ToolDocuments, refuseWhatTheirToolCannotDo)
{
    const std::tuple<ParsedTool (*)(const QJsonObject&), const char*, std::string> rows[] = {
        {parseToolPolygon, R"({"maxPointSupport":2})", "can not set polygon max points less than 3"},
        {parseToolPolygon, R"({"maxPointSupport":3,"minPointSupport":2})",
         "can not set polygon min points less than 3"},
        {parseToolPolygon, R"({"maxPointSupport":5,"minPointSupport":6})",
         "can not set polygon max points less than min points"},
        {parseToolPolygon, R"({"minPointSupport":3})", "can not set polygon max points less than min points"},
        {parseToolBreakline, R"({"maxPointSupport":1})", "can not set line max points less than 2"},
        {parseToolBreakline, R"({"minPointSupport":1})", "can not set line min points less than 2"},
        {parseToolBreakline, R"({"minPointSupport":3})", "can not set line max points less than min points"},
        {parseToolLine, R"({"drawColor":"#nonsense"})", mismatch("drawColor", "color")},
        {parseToolLine, R"({"tips":5})", mismatch("tips", "string")},
        {parseToolPoint, R"({"tips":5})", mismatch("tips", "string")},
        {parseToolPoint, R"({"drawColor":"#nonsense"})", ""},
        {parseToolPolygon, R"({"tips":5,"drawColor":7,"showWH":"yes"})", ""},
        {parseToolBreakline, R"({"tips":5,"maxPointSupport":2})", ""},
        {parseToolRectangle, R"({"tips":5,"id":"x","widthHeightRate":"x","maxShapeSupport":1e300})", ""},
        {parseToolZoom, R"({"type":"x"})", ""},
    };
    for (const auto& [parse, document, message] : rows) {
        const ParsedTool parsed = parse(object(document));
        EXPECT_EQ(messageOf(parsed.first), message) << document;
        EXPECT_EQ(parsed.second != nullptr, message.empty()) << document;
    }
    for (const auto parse :
         {parseToolPolygon, parseToolBreakline, parseToolLine, parseToolPoint, parseToolRectangle, parseToolZoom})
        EXPECT_TRUE(parse({}).second);
}

TEST(ToolDocuments, readEachKeyInItsOwnWay)
{
    const auto filled = parseToolPolygon(object(R"({"fillColor":"red"})"));
    EXPECT_TRUE(toolOf<ToolPolygon>(filled)->fillColor.isValid());
    const auto blended = parseToolPolygon(object(R"({"fillColor":"red","translucent":0.5})"));
    EXPECT_FALSE(toolOf<ToolPolygon>(blended)->fillColor.isValid());

    EXPECT_EQ(toolOf<ToolPoint>(parseToolPoint({}))->id, 1);
    EXPECT_EQ(toolOf<ToolPoint>(parseToolPoint(object(R"({"type":"circle"})")))->pointType, 0);
    EXPECT_EQ(toolOf<ToolPoint>(parseToolPoint(object(R"({"type":"star"})")))->pointType, 1);

    const auto rectangle = toolOf<ToolRectangle>(parseToolRectangle(object(R"({"widthHeightRate":0,"redrawMode":2})")));
    EXPECT_TRUE(rectangle->widthHeightRate == -1.0 && !rectangle->redraw);

    const auto line = [](const char* document) { return toolOf<ToolLine>(parseToolLine(object(document))); };
    EXPECT_EQ(line(R"({"lineType":3,"direction":2})")->crossDirection, 3);
    EXPECT_EQ(line(R"({"lineType":1,"direction":1})")->sideDirection, 2);
    EXPECT_EQ(line(R"({"direction":1})")->sideDirection, 0);
}
