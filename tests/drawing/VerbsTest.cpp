#include "tests/drawing/DrawingWall.h"

using wall::DrawingTest;

class Verbs : public DrawingTest
{
protected:
    void addAll()
    {
        ask(LD_SetRectInfo, R"({"rectInfo":[{"id":1,"points":[[0.1,0.1],[0.1,0.2],[0.2,0.2],[0.2,0.1]]},
                                            {"id":2,"points":[[0.3,0.3],[0.3,0.4],[0.4,0.4],[0.4,0.3]]}]})");
        ask(LD_SetPolygonInfo, R"({"polygonInfo":[{"id":3,"points":[[0.5,0.5],[0.6,0.5],[0.6,0.6]]}]})");
        ask(LD_SetLineInfo, R"({"lineInfo":[{"id":4,"lineType":2,"points":[[0.1,0.9],[0.2,0.9],[0.3,0.8]]},
                                            {"id":5,"points":[[0.7,0.7],[0.8,0.8]]}]})");
        ask(LD_SetPointInfo, R"({"pointInfo":[{"id":6,"points":[0.5,0.1]}]})");
        ask(LD_SetGridInfo, R"({"gridInfo":{"gridMap":"ff","gridColNum":22,"gridRowNum":18}})");
    }
    int count() { return static_cast<int>(view().getGraphics().size()); }
};

TEST_F(Verbs, clearWhatTheirWordSays)
{
    const journal::Tolerated words;
    const std::tuple<QByteArray, int, int> rows[] = {
        // shapes left of the seven by type, and by id
        {R"({"type":"RECT","id":[2]})", 6, 6},
        {R"({"type":"rect"})", 5, 7},
        {R"({"type":"polygon","id":[1]})", 7, 7},
        {R"({"type":"line","id":[4,5]})", 5, 5},
        {R"({"type":"line"})", 5, 7},
        {R"({"type":"grid","id":[9]})", 6, 7},
        {R"({"type":"all","id":[1,4]})", 0, 5},
        {R"({"type":"allWindows"})", 0, 7},
        {R"({"type":"circle","id":[1]})", 7, 7},
        {R"({"id":[1]})", 7, 7},
        {R"({"type":"point","id":"6"})", 6, 7},
    };
    for (const auto& [request, byType, byId] : rows) {
        for (const auto& [verb, left] : {std::pair{LD_ClearShapeByType, byType}, {LD_ClearShapeById, byId}}) {
            wall::take(LD_ClearGraphics(&main()));
            addAll();
            ASSERT_EQ(count(), 7);
            EXPECT_TRUE(ask(verb, request).null);
            EXPECT_EQ(count(), left) << request.toStdString();
        }
    }
}

TEST_F(Verbs, selectingGoesByIdWhateverTheWordAndLinesAreListedBeforeBrokenOnes)
{
    const journal::Tolerated words;
    addAll();
    const QJsonArray all = lines();
    ASSERT_EQ(all.size(), 2);
    EXPECT_TRUE(all[0].toObject()["id"] == 5 && all[1].toObject()["id"] == 4);
    const auto selected = [&] {
        QList<int> ids;
        for (const auto& shape : view().getGraphics()) {
            if (shape->selected)
                ids.append(shape->id);
        }
        return ids;
    };
    EXPECT_TRUE(ask(LD_SelectShape, R"({"type":"rect","id":3})").null);
    EXPECT_EQ(selected(), QList<int>{3});
    EXPECT_TRUE(ask(LD_SelectShape, R"({"type":"grid","id":1})").null);
    EXPECT_EQ(selected(), QList<int>{3}) << "grids are not selected";
    EXPECT_TRUE(ask(LD_SelectShape, R"({"type":"line","id":0})").null);
    EXPECT_TRUE(selected().isEmpty());
}

TEST_F(Verbs, aBadShapeKeepsTheOnesBeforeIt)
{
    const journal::Tolerated badShapes;
    const wall::Answer answer = ask(LD_SetRectInfo, R"({"rectInfo":[
        {"id":1,"points":[[0.1,0.1],[0.1,0.2],[0.2,0.2],[0.2,0.1]]}, {"id":2}, {"id":3,"points":[[0,0],[0,1],[1,1],[1,0]]}]})");
    EXPECT_EQ(answer.message(), wall::missing("points"));
    EXPECT_EQ(rectangles().size(), 1);
    for (const char* const nothing : {"{}", R"({"rectInfo":[]})", R"({"rectInfo":5})", "[]", ""})
        EXPECT_TRUE(ask(LD_SetRectInfo, nothing).null);
    EXPECT_EQ(rectangles().size(), 1);
}

TEST_F(Verbs, aToolMakesRoomRestsWhileDrawingIsDisabledAndEndsWithAShapeOfItsId)
{
    ask(LD_SetRectInfo, R"({"rectInfo":[{"id":4,"points":[[0.1,0.1],[0.1,0.2],[0.2,0.2],[0.2,0.1]]}]})");
    ask(LD_SetPointInfo, R"({"pointInfo":[{"id":4,"points":[0.5,0.1]}]})");
    take("Rect", R"({"id":4})");
    EXPECT_TRUE(rectangles().isEmpty() && points().size() == 1) << "the family of a rectangle makes room";
    ask(LD_ClearShapeById, R"({"type":"point","id":[4]})");
    const auto tool = view().current_tool_;
    for (int twice = 0; twice < 2; ++twice)
        EXPECT_TRUE(ask(LD_SetDrawStatus, R"({"enable":false})").null);
    EXPECT_TRUE(!view().current_tool_ && view().saved_tool_ == tool);
    EXPECT_TRUE(ask(LD_SetDrawStatus, R"({"enable":true})").null);
    EXPECT_EQ(view().current_tool_, tool);
    ask(LD_SetPolygonInfo, R"({"polygonInfo":[{"id":4,"points":[[0.5,0.5],[0.6,0.5],[0.6,0.6]]}]})");
    EXPECT_TRUE(view().current_tool_);
    ask(LD_SetRectInfo, R"({"rectInfo":[{"id":4,"points":[[0.1,0.1],[0.1,0.2],[0.2,0.2],[0.2,0.1]]}]})");
    EXPECT_FALSE(view().current_tool_);
    EXPECT_EQ(count(), 1) << "the rectangle takes the polygon's place";
}

TEST_F(Verbs, overlaysComeAndGoTogether)
{
    const journal::Tolerated badShapes;
    EXPECT_TRUE(ask(LD_SetTextOverlay, R"({"overlayInfo":{"width":352,
        "channelName":{"name":"gate","enable":true,"point":[0.1,0.1]},
        "text":[{"bad":true},{"text":"hall","id":1,"enable":true,"point":[0.2,0.1]}]}})")
                    .null)
        << "the last text decides";
    const QJsonObject info = wall::take(LD_GetTextOverlay(&main())).object["overlayInfo"].toObject();
    EXPECT_EQ(info["channelName"].toObject()["name"].toString(), "gate");
    EXPECT_FALSE(info.contains("date"));
    ASSERT_EQ(info["text"].toArray().size(), 1);
    EXPECT_EQ(info["text"].toArray()[0].toObject()["id"].toInt(), 1);
    EXPECT_TRUE(ask(LD_SetTextOverlay, "{}").null);
    EXPECT_EQ(count(), 0);
}

TEST_F(Verbs, withoutAWindowEachAnswersInItsOwnWay)
{
    arrange(R"({"custom":{"windows":[]}})");
    EXPECT_EQ(ask(LD_SetRectInfo, R"({"rectInfo":[{}]})").message(), "can not find graphics view of target widget");
    EXPECT_EQ(ask(LD_SetDrawCallback, R"({"enable":true,"type":"Rect"})").message(), "can not find graphics view");
    EXPECT_EQ(wall::take(LD_GetRectInfo(&main())).message(), "internal error can not find graphics view");
    EXPECT_TRUE(ask(LD_SetDrawStatus, R"({"enable":true})").null);
    EXPECT_TRUE(ask(LD_SetDrawShapeInfo, R"({"drawType":"Rect"})").null);
    EXPECT_EQ(ask(LD_ClearShapeByType, R"({"type":"choosed"})").object["clearedShapeId"].toInt(), -1);
}
