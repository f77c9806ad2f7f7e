#include "src/util/JsonUtil.h"

#include <gtest/gtest.h>

using namespace quillmark::lumen_deck;

namespace {

QJsonObject object(const char* text)
{
    return QJsonDocument::fromJson(text).object();
}

std::string messageOf(const std::shared_ptr<ErrorBase>& error)
{
    return error ? error->toJson().object()["errorMessage"].toString().toStdString() : "";
}

TEST(JsonUtil, OptionalFieldsOfTheRightTypeAreRead)
{
    const QJsonObject fields = object(R"({"i":7,"d":1.5,"b":true,"s":"","a":[1],"c":"#ff8000","n":null})");
    EXPECT_EQ(parseOptional<int>(fields, "i").second, QVariant(7));
    EXPECT_EQ(parseOptional<double>(fields, "d", 9.0).second, 1.5);
    EXPECT_EQ(parseOptional<bool>(fields, "b", false).second, true);
    EXPECT_EQ(parseOptional<QString>(fields, "s", QString("x")).second, "");
    EXPECT_EQ(parseOptional<QJsonArray>(fields, "a").second.toJsonArray().size(), 1);
    EXPECT_EQ(parseOptional<QColor>(fields, "c", QColor()).second, QColor(255, 128, 0));
    EXPECT_EQ(parseOptional<QVariant>(fields, "d").second.toDouble(), 1.5);

    const auto [error, absent] = parseOptional<double>(fields, "none");
    EXPECT_FALSE(error);
    EXPECT_TRUE(absent.isNull());
    EXPECT_EQ(parseOptional<QString>(fields, "none", QString("x")).second, "x");
}

TEST(JsonUtil, FieldsOfTheWrongTypeAreErrorsButForNumbers)
{
    const QJsonObject fields = object(R"({"t":"x","n":1,"z":"#zz0000","null":null,"half":1.5,"huge":1e30})");
    const auto mismatch = [](const char* key, const char* word) {
        return std::string("error retrieving an optional field ") + key + ", type mismatch, required type is " + word;
    };
    EXPECT_EQ(messageOf(parseOptional<double>(fields, "t").first), mismatch("t", "double"));
    EXPECT_EQ(messageOf(parseOptional<bool>(fields, "n", true).first), mismatch("n", "bool"));
    EXPECT_EQ(messageOf(parseOptional<QString>(fields, "null").first), mismatch("null", "string"));
    EXPECT_EQ(messageOf(parseRequired<QJsonArray>(fields, "t").first), mismatch("t", "array"));
    EXPECT_EQ(messageOf(parseOptional<QColor>(fields, "z").first), mismatch("z", "color"));
    EXPECT_EQ(messageOf(parseOptional<QColor>(fields, "n").first), mismatch("n", "color"));
    for (const char* key : {"t", "half", "huge", "null"}) {
        const auto [error, value] = parseRequired<int>(fields, key);
        EXPECT_FALSE(error) << key;
        EXPECT_EQ(value, QVariant(0)) << key;
    }
}

TEST(JsonUtil, RequiredFieldsMayNotBeAbsent)
{
    const auto [error, value] = parseRequired<QString>(QJsonObject(), "a");
    EXPECT_TRUE(value.isNull());
    const QJsonObject document = error->toJson().object();
    EXPECT_EQ(document["errorMessage"], "an required field is missing from json object, required key is a");
    EXPECT_EQ(document["json_string"], "{\n}\n");
    EXPECT_EQ(document["errorModule"], "src/util/JsonUtil");
    EXPECT_TRUE(parseRequired<QVariant>(object(R"({"a":null})"), "a").first);
    EXPECT_FALSE(parseRequired<QString>(object(R"({"a":""})"), "a").first);
}

TEST(JsonUtil, ReferencesAreNumbersOrNames)
{
    const QJsonObject fields = object(R"({"n":2,"f":1.5,"s":"left","b":true})");
    EXPECT_EQ(parseReference<QVariant>(fields, "n").second, QVariant(2));
    EXPECT_EQ(parseReference<QVariant>(fields, "f").second, QVariant(0));
    EXPECT_EQ(parseReference<QVariant>(fields, "s").second, QVariant("left"));
    EXPECT_TRUE(parseReference<QVariant>(fields, "none").second.isNull());
    EXPECT_EQ(messageOf(parseReference<QVariant>(fields, "b").first),
              "error parsing refence key b, type mismatch, type required is int, std::size_t or QString");
}

TEST(JsonUtil, AssignLaysOneObjectOverAnother)
{
    QJsonObject target = object(R"({"a":1,"b":2})");
    EXPECT_EQ(assign(target, QJsonObject()), object(R"({"a":1,"b":2})"));
    EXPECT_EQ(assign(target, object(R"({"b":3,"c":4})")), object(R"({"a":1,"b":3,"c":4})"));
    EXPECT_EQ(target, object(R"({"a":1,"b":3,"c":4})"));
}

TEST(Errors, TellWhatAndWhereInTextAndJson)
{
    const ReferenceError reference("play_window reference can not be found", "src/graphics/GraphicsView", 135);
    EXPECT_EQ(reference.toJson().object(),
              object(R"({"errorCode":502,"errorLine":135,"errorMessage":"play_window reference can not be found",
                         "errorModule":"src/graphics/GraphicsView","errorName":"reference error"})"));
    EXPECT_EQ(reference.toString(), "Error reference error \n    error message: play_window reference can not be "
                                    "found \n....occurred at file src/graphics/GraphicsView \n    at line 135\n");
    EXPECT_EQ(InvalidStatusError("m", "f", 1).toJson().object()["errorCode"], 501);

    const auto json = constructJsonError("a %1 b", QJsonArray{1}, "f", 1);
    EXPECT_EQ(json->toJson().object()["errorCode"], 500);
    EXPECT_TRUE(json->toString().endsWith("    error json string: [\n    1\n]\n"));

    const TidePipeError engine("m", "f", 1, 17);
    EXPECT_EQ(engine.toJson().object()["errorCode"], 17);
    EXPECT_EQ(engine.toJson().object()["tide_pipe_error_code"], 17);
    EXPECT_EQ(engine.toJson().object()["errorName"], "tide_pipe error");
    EXPECT_TRUE(engine.toString().endsWith("    tide_pipe error code is 17"));
}

} // namespace
