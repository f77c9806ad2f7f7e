#include "tests/graphics/Shapes.h"

#include <set>

using namespace shapes;

namespace {

const std::string kPointMessage =
    "point descriptor should be json array and should contains at least two entry of double";
const std::string kRectMessage = "rectangle descriptor should contains at least four points.";
const std::string kLineMessage =
    "line json descriptor must contains an array of points descriptor of two points descriptor";
const std::string kNoPointMessage = "point json descriptor must contains an point";
const std::string kChainMessage =
    "parse polygon points failed, polygon should contains points, which should be an two-dimension array";

const std::map<G::GraphicsType, QByteArray> kFull = {
    {G::Rectangle,
     R"({"points":[[0.2,0.2],0,[0.4,0.5],0],"id":1,"editType":0,"drawColor":"blue","tipsPos":1,"translucent":1.0,
         "fillColor":"red","tips":"t","widthHeightRate":2.0})"},
    {G::Line,
     R"({"points":[[0.2,0.2],[0.4,0.5]],"id":1,"editType":0,"drawColor":"blue","direction":1,"lineType":4,
         "demarcationLineWidth":0.5,"showPDCLine":true,"showShoulderLine":true,"tips":"t","cutOffPositions":[0.5]})"},
    {G::Breakline,
     R"({"points":[[0.2,0.2],[0.4,0.5]],"id":1,"closed":true,"drawColor":"blue","tips":"t","editType":0,"direction":2})"},
    {G::Polygon,
     R"({"points":[[0.2,0.2],[0.4,0.5],[0.1,0.5]],"id":1,"closed":true,"drawColor":"blue","translucent":1.0,
         "fillColor":"red","tips":"t","editType":0,"showWH":true})"},
    {G::Point, R"({"points":[0.2,0.2],"id":1,"editType":0,"drawColor":"blue","tips":"t","type":"cross"})"},
    {G::Grid, R"({"gridMap":"fffffc","drawColor":"blue","gridColNum":22,"gridRowNum":18})"},
    {G::Overlay,
     R"({"timeFormat":"24hour","dateType":1,"showWeekDay":true,"enable":true,"point":[0.1,0.1],"alignment":1,
         "minMoveValue":8,"width":352,"height":288})"},
};

const std::map<std::pair<G::GraphicsType, std::string>, std::string> kStrict = {
    {{G::Line, "tips"}, "string"},          {{G::Line, "cutOffPositions"}, "array"}, {{G::Breakline, "tips"}, "string"},
    {{G::Polygon, "tips"}, "string"},       {{G::Point, "tips"}, "string"},          {{G::Point, "type"}, "string"},
    {{G::Overlay, "timeFormat"}, "string"}, {{G::Overlay, "showWeekDay"}, "bool"},
};

std::string typeOf(const QJsonValue& value)
{
    return value.isString() ? "string" : value.isArray() ? "array" : value.isBool() ? "bool" : "other";
}

// What a document whose key `key` has a wrong value is refused with; "" for not at all.
std::string expectedRefusal(G::GraphicsType type, const std::string& key, const QJsonValue& wrong)
{
    static const std::map<G::GraphicsType, std::string> noPoints = {
        {G::Rectangle, kRectMessage}, {G::Line, kLineMessage}, {G::Point, kNoPointMessage}};
    if (key == "points" && wrong.isArray()) // an empty list
        return noPoints.count(type) != 0 ? noPoints.at(type) : "";
    if (key == "points")
        return mismatch(key, "array");
    const auto strict = kStrict.find({type, key});
    return strict == kStrict.end() || strict->second == typeOf(wrong) ? "" : mismatch(key, strict->second);
}

} // namespace

TEST(Documents, saysWhatIsMissingAndRefusesOrLeavesOutWhatIsWrong)
{
    const std::set<QString> required = {"points", "id", "gridColNum", "gridRowNum"};
    const QJsonValue wrong[] = {QJsonValue(),         true, 7, -0.5, 1e300, "x", "#nonsense", QJsonArray(),
                                QJsonObject{{"a", 1}}};
    for (const auto& [type, text] : kFull) {
        const QJsonObject good = object(text);
        ASSERT_EQ(messageOf(shapeRow(type).parse(good).first), "") << type;
        for (const QString& key : good.keys()) {
            QJsonObject lacking = good;
            lacking.remove(key);
            EXPECT_EQ(messageOf(shapeRow(type).parse(lacking).first),
                      required.count(key) ? missing(key.toStdString()) : "");
            for (const QJsonValue& value : wrong) {
                QJsonObject broken = good;
                broken[key] = value;
                const ParsedGraphics parsed = shapeRow(type).parse(broken);
                EXPECT_EQ(messageOf(parsed.first), expectedRefusal(type, key.toStdString(), value))
                    << type << key.toStdString() << QJsonDocument(QJsonArray{value}).toJson().constData();
                EXPECT_EQ(parsed.second != nullptr, !parsed.first && (key != "enable" || value.toBool())) << type;
            }
        }
    }
    EXPECT_EQ(messageOf(parse(G::Overlay, R"({"text":"hello","enable":true})").first), missing("id"));
    EXPECT_EQ(messageOf(parse(G::Overlay, R"({"enable":true})").first),
              "can not deduce what kind of text overlay it is");
}

TEST(Documents, countsOfPointsAreExact)
{
    const std::tuple<G::GraphicsType, QByteArray, std::string> cases[] = {
        {G::Rectangle, "[[0,0],[0,0],[1,1]]", kRectMessage},
        {G::Rectangle, "[[0,0],[0,0],[1,1],[1,1],[1,1]]", kRectMessage},
        {G::Rectangle, "[0,[0,0],[1,1],[1,1]]", kRectMessage},
        {G::Rectangle, "[[0,0],null,[1,1],null]", ""},
        {G::Rectangle, "[[0],null,[1,1],null]", kPointMessage},
        {G::Line, "[[0,0]]", kLineMessage},
        {G::Line, "[[0,0],[1,1],[1,1]]", kLineMessage},
        {G::Line, "[[0,0],5]", kLineMessage},
        {G::Line, "[[0,0],[1,2,3]]", kPointMessage},
        {G::Breakline, "[[0.1,0.1],5]", kChainMessage},
        {G::Polygon, "[[0.1,\"a\"]]", kPointMessage},
        {G::Point, "[[0.5,0.5]]", kNoPointMessage},
        {G::Point, "[[0.1,0.2],[0.3,0.4]]", kPointMessage},
        {G::Point, "[2,-1]", ""},
    };
    for (const auto& [type, points, refused] : cases)
        EXPECT_EQ(messageOf(parse(type, R"({"id":1,"points":)" + points + "}").first), refused) << points.constData();
}

TEST(Documents, comeBackAsTheyWereUnderstood)
{
    const std::tuple<G::GraphicsType, QByteArray, QByteArray> cases[] = {
        {G::Rectangle, R"({"points":[[0.5,0.5],0,[0.25,0.25],0],"id":3,"tips":"x","drawColor":"#00ff00"})",
         R"({"id":3,"tips":"","drawColor":"#00ff00","points":[[0.25,0.25],[0.25,0.5],[0.5,0.5],[0.5,0.25]]})"},
        {G::Line, R"({"points":[[0,0],[1,0.5]],"id":2,"lineType":3})",
         R"({"id":2,"editType":0,"lineType":0,"points":[[0,0],[1,0.5]],"drawColor":"#ff0000"})"},
        {G::Line, R"({"points":[[0,0],[1,0.5]],"id":2,"lineType":3,"direction":2,"editType":1})",
         R"({"id":2,"editType":1,"lineType":3,"direction":2,"points":[[0,0],[1,0.5]],"drawColor":"#ff0000"})"},
        {G::Line, R"({"points":[[0,0],[1,0.5]],"id":2,"lineType":1,"direction":1,"editType":2})",
         R"({"id":2,"editType":2,"lineType":1,"points":[[0,0],[1,0.5]],"drawColor":"#ff0000"})"},
        {G::Line,
         R"({"points":[[0,0],[1,0.5]],"id":2,"lineType":4,"direction":0,"demarcationLineWidth":0.5,
             "cutOffPositions":[0.25,"x"]})",
         R"({"id":2,"editType":0,"lineType":4,"direction":0,"points":[[0,0],[1,0.5]],"drawColor":"#ff0000",
             "demarcationPoint":[[0,0],[0.5,0.25]],"cutOffPositions":[0.25,"x"]})"},
        {G::Breakline, R"({"points":[],"id":-1,"direction":3,"tips":"x","lineType":9})",
         R"({"points":[],"direction":0,"tips":"x","lineType":2,"closed":true,"drawColor":"#ff0000"})"},
        {G::Polygon, R"({"points":[[0,0],[1,0],[1,1]],"id":4,"closed":false})",
         R"({"id":4,"tips":"","closed":false,"points":[[0,0],[1,0]],"drawColor":"#ff0000"})"},
        {G::Point, R"({"points":[0.5,0.5],"id":1,"type":"Cross"})", R"({"id":1,"point":[0.5,0.5]})"},
        {G::Grid, R"({"gridMap":"FFz0f","gridColNum":3,"gridRowNum":-2})",
         R"({"gridMap":"ff0f","gridColNum":3,"gridRowNum":-2})"},
        {G::Overlay, R"({"name":"Gate 1","enable":true,"point":[0.1,0.1]})",
         R"({"name":"Gate 1","enable":true,"point":[0.1,0.1],"alignment":0})"},
        {G::Overlay, R"({"dateType":1,"enable":true})",
         R"({"enable":true,"point":[0,0],"alignment":0,"timeFormat":"24hour","showWeekDay":true})"},
        {G::Overlay, R"({"text":"","id":3,"enable":true,"alignment":2})",
         R"({"text":"","id":3,"enable":false,"point":[0,0],"alignment":2})"},
    };
    for (const auto& [type, in, out] : cases) {
        const auto shape = make(type, in);
        ASSERT_TRUE(shape) << in.constData();
        EXPECT_EQ(shape->toJson(), object(out)) << QJsonDocument(shape->toJson()).toJson().constData();
    }
    for (const char* const off :
         {R"({"name":"","enable":true})", R"({"name":"x","enable":false})", R"({"text":"x","id":1})"}) {
        const ParsedGraphics parsed = parse(G::Overlay, off);
        EXPECT_TRUE(!parsed.first && !parsed.second) << off;
    }
}

TEST(Documents, optionalKeysHaveTheirDefaultsAndLimits)
{
    const auto rectangle = make<GraphicsRectangle>(
        G::Rectangle, R"({"points":[[0,0],0,[1,1],0],"id":1,"widthHeightRate":0,"editType":9})");
    EXPECT_TRUE(rectangle->widthHeightRate == 1.0 && rectangle->resizable);
    const auto overlay = make<GraphicsOverlay>(
        G::Overlay, R"({"dateType":2,"enable":true,"width":-5,"minMoveValue":0,"timeFormat":"12HOUR"})");
    EXPECT_EQ(overlay->width, 704);
    EXPECT_TRUE(overlay->minMoveValue == 0 && overlay->dateTimeFormat.hour24 == 0);
    const auto point = make<GraphicsPoint>(G::Point, R"({"points":[0,0],"id":1,"editType":1,"type":"cross"})");
    EXPECT_TRUE(!point->editable && point->pointType == 1);
}
