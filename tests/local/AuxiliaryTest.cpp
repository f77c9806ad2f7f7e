#include "src/auxiliary.h"

#include "tests/local/LocalFiles.h"

namespace local_test {

TEST(AuxiliaryTest, requestsBecomeFlat)
{
    const auxiliary tools;
    QMap<QString, QVariant> map{{"old", 1}};
    const QJsonDocument plain = json(R"({"a":1.5,"b":2,"c":"x","d":true,"e":{},"f":[1],"g":null,"h":1e12})");
    tools.ParseJson(&plain, &map);
    EXPECT_EQ(map, (QMap<QString, QVariant>{
                       {"a", 0}, {"b", 2}, {"c", "x"}, {"d", ""}, {"e", ""}, {"f", ""}, {"g", ""}, {"h", 0}}));
    EXPECT_EQ(map["b"].type(), QVariant::Int);
    EXPECT_EQ(map["d"].type(), QVariant::String);

    const QJsonDocument nested = json(R"({"a":{"b":1,"c":"x","deep":{"z":1}},"c":"later"})");
    tools.ParseJson(&nested, &map);
    EXPECT_EQ(map, (QMap<QString, QVariant>{{"b", ""}, {"c", "later"}, {"deep", ""}}));

    const QJsonDocument array = json("[{\"a\":1}]");
    for (const QJsonDocument* nothing : {&array, static_cast<const QJsonDocument*>(nullptr)}) {
        map["old"] = 1;
        tools.ParseJson(nothing, &map);
        EXPECT_TRUE(map.isEmpty());
    }
}

TEST(AuxiliaryTest, mapsBecomeDocuments)
{
    QJsonDocument document;
    const QMap<QString, QVariant> map{{"text", "1"}, {"number", 1}, {"inner", QVariant(json(R"({"k":[1]})"))}};
    auxiliary().CreateJson(&map, &document);
    EXPECT_EQ(document, json(R"({"text":"1","number":1,"inner":{"k":[1]}})"));
}

TEST(AuxiliaryTest, textIsReadUpToItsFirstZeroByte)
{
    const auxiliary tools;
    EXPECT_EQ(tools.getJsonDocumentFromString(QString::fromUtf8("{\"ä\":1}") + QChar(0) + "rest"), json("{\"ä\":1}"));
    EXPECT_TRUE(tools.getJsonDocumentFromString("{").isNull());
    EXPECT_TRUE(tools.getJsonDocumentFromString(QString(100000, '[')).isNull());
}

TEST(AuxiliaryTest, successIsMarkedUnlessAFailureIs)
{
    QJsonObject failed{{"errorModule", "X"}};
    auxiliary().doresult(failed);
    EXPECT_EQ(failed, (QJsonObject{{"errorModule", "X"}}));
    QJsonObject succeeded;
    auxiliary().doresult(succeeded);
    EXPECT_EQ(succeeded, (QJsonObject{{"errorModule", ""}, {"errorCode", 0}}));
}

TEST(AuxiliaryTest, foldersAreMadeOneLevelAtATime)
{
    const QTemporaryDir folder;
    const auxiliary tools;
    EXPECT_TRUE(tools.CheckDirectory(folder.filePath("a")));
    EXPECT_FALSE(tools.CheckDirectory(folder.filePath("a")));
    EXPECT_FALSE(tools.CheckDirectory(folder.filePath("b/c")));
    EXPECT_FALSE(QDir(folder.filePath("b")).exists());
}

} // namespace local_test
