#include "src/util/JsonUtil.h"

#include "tests/support/Documents.h"

#include <gtest/gtest.h>

using namespace quillmark::lumen_deck;
using namespace documents;

namespace {

TEST(JsonUtil, RequiredFieldsMayNotBeAbsent)
{
    const auto [error, value] = parseRequired<QString>(QJsonObject(), "a");
    EXPECT_TRUE(value.isNull());
    EXPECT_EQ(messageOf(error), missing("a"));
    EXPECT_EQ(error->toJson()["json_string"], "{\n}\n");
    EXPECT_TRUE(parseRequired<QVariant>(object(R"({"a":null})"), "a").first);
    EXPECT_FALSE(parseRequired<QString>(object(R"({"a":""})"), "a").first);
}

TEST(Errors, TellWhatAndWhereInTextAndJson)
{
    const ReferenceError reference("play_window reference can not be found", "src/graphics/GraphicsView", 135);
    EXPECT_EQ(reference.toJson().object(),
              object(R"({"errorCode":502,"errorLine":135,"errorMessage":"play_window reference can not be found",
                         "errorModule":"src/graphics/GraphicsView","errorName":"reference error"})"));
    EXPECT_EQ(reference.toString(), "Error reference error \n    error message: play_window reference can not be "
                                    "found \n....occurred at file src/graphics/GraphicsView \n    at line 135\n");
    EXPECT_TRUE(constructJsonError("a %1 b", QJsonArray{1}, "f", 1)
                    ->toString()
                    .endsWith("    error json string: [\n    1\n]\n"));
    const TidePipeError engine("m", "f", 1, 17);
    EXPECT_EQ(engine.toJson()["tide_pipe_error_code"], 17);
    EXPECT_EQ(engine.toJson()["errorName"], "tide_pipe error");
    EXPECT_TRUE(engine.toString().endsWith("    tide_pipe error code is 17"));
}

} // namespace
