#include "tests/fisheye/FisheyeWall.h"

using engine_double::calls;
using testing::ElementsAre;
using testing::IsEmpty;
using wall::json;

// The engine says of every view that it looks at (0.4, 0.5) with zoom -0.1 and angle 0.2.
class MovesTest : public wall::FisheyeTest
{
protected:
    void SetUp() override
    {
        FisheyeTest::SetUp();
        engine_double::give("TP_FEC_GetParam", {0, 0.4, 0.5, -0.1, 0.2});
    }

    std::string update()
    {
        const auto updates = calls("TP_FEC_UpDateParam");
        const std::string record = updates.empty() ? "" : updates.back().arguments.at(2);
        return record.substr(0, record.find(" color"));
    }
};

TEST_F(MovesTest, stepsByMountingRoleAndDirection)
{
    const journal::Tolerated outOfRange;
    // Arrangement, place, request, and the record that it makes, or null when it is refused.
    // clang-format off
    const std::tuple<int, int, const char*, const char*> steps[] = {
        {2, 0, R"({"direction":0,"speed":7})", "mask 8 at 0.400000,0.497161,-0.100000,0.200000"},
        {2, 0, R"({"direction":1,"speed":7})", "mask 8 at 0.400000,0.502839,-0.100000,0.200000"},
        {2, 0, R"({"direction":2,"speed":"1"})", "mask 8 at 0.399054,0.500000,-0.100000,0.200000"},
        {2, 0, R"({"direction":3,"speed":0})", "mask 8 at 0.400000,0.500000,-0.100000,0.200000"},
        {2, 1, R"({"direction":3,"speed":7})", "mask 8 at 0.700000,0.800000,-0.100000,0.200000"},
        {2, 0, R"({"direction":4,"speed":3})", "mask 2 at 0.000000,0.000000,-0.075000,0.000000"},
        {0, 0, R"({"direction":5,"speed":7})", "mask 2 at 0.000000,0.000000,-0.125000,0.000000"},
        {1, 0, R"({"direction":2,"speed":1})", "mask 4 at 0.400000,0.500000,-0.100000,0.450000"},
        {3, 0, R"({"direction":3,"speed":7})", "mask 4 at 0.400000,0.500000,-0.100000,-1.250000"},
        {1, 0, R"({"direction":0,"speed":1})", nullptr}, {0, 0, R"({"direction":0,"speed":1})", nullptr},
        {4, 0, R"({"direction":0,"speed":8})", nullptr}, {2, 0, R"({"direction":0,"speed":-1})", nullptr},
        {2, 0, R"({"direction":6,"speed":1})", nullptr}, {2, 0, R"({"direction":-1,"speed":1e300})", nullptr}};
    // clang-format on
    engine_double::give("TP_FEC_PTZ2WindowEx", {0.7, 0.8});
    for (const auto& [arrangement, place, request, record] : steps) {
        SCOPED_TRACE(request);
        ask(LD_SetPlaceType, R"({"type":)" + QByteArray::number(place) + "}");
        playViews(arrangement);
        const wall::Answer answer = ask(LD_FishEyePTZ, request);
        EXPECT_EQ(answer.message(), record ? "" : "setFisheyePTZ param error");
        if (record) {
            EXPECT_EQ(update(), record);
        }
        LD_Release(LD_StopRealPlayAll(&main()));
    }
    const auto turned = calls("TP_FEC_PTZ2WindowEx").at(0).arguments;
    EXPECT_EQ(turned.at(3) + " " + turned.at(4) + " " + turned.at(5),
              "0.400000,0.500000 0.500000,0.500000 0.502839,0.500000");
    playViews(4);
    EXPECT_EQ(ask(LD_FishEyeZoomIn, R"({"speed":2})").message(), "");
    EXPECT_EQ(ask(LD_FishEyeZoomOut, R"({"speed":2,"direction":0})").message(), "");
    EXPECT_EQ(update(), "mask 2 at 0.000000,0.000000,-0.125000,0.000000");
    EXPECT_EQ(ask(LD_FishEyeZoomIn, "[]").message(), "setModuleFisheyePTZ param error");
}

TEST_F(MovesTest, theSelectedViewScansUntilAllAreStopped)
{
    const journal::Tolerated outOfRange;
    playViews(4);
    press(1, {50, 50}); // selects it
    release(1, {50, 50});
    engine_double::give("TP_FEC_TestScan", {0.6, 0.7});
    ASSERT_EQ(ask(LD_StartFECScan, R"({"speed":3})").message(), "");
    ASSERT_EQ(ask(LD_StartFECScan, R"({"speed":9})").message(), "") << "begins anew, without a step";
    ask(LD_StartFECScan, R"({"speed":3})");
    EXPECT_THAT(timers(companion(1)), testing::UnorderedElementsAre(25, 5000));
    forget();
    expire(companion(1), 25);
    EXPECT_EQ(asked(), "TestScan(10, 12, pointer, pointer, 3, 0.005000); SetDrawType(10, 2); "
                       "UpDateParam(10, 12, mask 8 at 0.600000,0.700000,0.000000,0.000000)");
    engine_double::answer("TP_FEC_TestScan", 1);
    expire(companion(1), 25);
    EXPECT_EQ(asked(), "TestScan(10, 12, pointer, pointer, 3, 0.005000)")
        << "a tick that the engine refuses is left out";
    EXPECT_TRUE(ask(LD_StopFECScan, "{}").null);
    EXPECT_THAT(timers(companion(1)), ElementsAre(5000));
    press(2, {50, 50});
    EXPECT_EQ(ask(LD_StartFECScan, R"({"speed":3})").message(), "startFisheyeScan param error") << "the panorama";
}

TEST_F(MovesTest, cruisesInACircle)
{
    const journal::Tolerated outOfRange;
    playViews(2);
    ASSERT_EQ(ask(LD_StartFECCruise, R"({"fishEyePresetList":[{"xPoint":0.1,"yPoint":0.2,"zPoint":-0.3,"time":2},
        {"xPoint":1e300,"time":-5},{"time":1e300},{"time":2.5}]})")
                  .message(),
              "");
    const std::pair<int, const char*> stations[] = {
        {2000, "mask 10 at 0.100000,0.200000,-0.300000,0.000000"},
        {0, "mask 10 at 340282346638528859811704183484516925440.000000,0.000000,0.000000,0.000000"},
        {2'000'000'000, "mask 10 at 0.000000,0.000000,0.000000,0.000000"},
        {2000, "mask 10 at 0.000000,0.000000,0.000000,0.000000"},
        {10, "mask 10 at 0.000000,0.000000,0.000000,0.000000"},
        {2000, "mask 10 at 0.100000,0.200000,-0.300000,0.000000"}};
    for (const auto& [dwell, record] : stations) {
        EXPECT_EQ(update(), record);
        EXPECT_THAT(timers(companion(0)), testing::UnorderedElementsAre(dwell, 5000));
        expire(companion(0), dwell);
    }
    EXPECT_TRUE(ask(LD_StopFECCruise, "{}").null);
    EXPECT_THAT(timers(companion(0)), ElementsAre(5000));
    engine_double::answer("TP_FEC_UpDateParam", -1);
    const char* const list = R"({"fishEyePresetList":[{"time":1}]})";
    EXPECT_EQ(ask(LD_StartFECCruise, list).message(), "startFisheyeCruise param error");
    EXPECT_THAT(timers(companion(0)), ElementsAre(5000));
    engine_double::answer("TP_FEC_UpDateParam", 0);
    QJsonArray places;
    for (int i = 0; i < 100'000; ++i)
        places.append(QJsonObject{{"time", i}});
    const QJsonDocument many(QJsonObject{{"fishEyePresetList", places}});
    EXPECT_TRUE(wall::take(LD_StartFECCruise(&main(), &many)).null);
}

TEST_F(MovesTest, presetsAndTheListOfViews)
{
    const journal::Tolerated outOfRange;
    playViews(15);
    EXPECT_EQ(ask(LD_FishEyeSetPreset, R"({"fishEyePreset":{"xPoint":0.25,"yPoint":"a"}})").message(), "");
    EXPECT_EQ(update(), "mask 10 at 0.250000,0.000000,0.000000,0.000000");
    engine_double::give("TP_FEC_GetParam", {0, 0.123456789, 0.5, -0.1, 0.2});
    EXPECT_EQ(ask(LD_FishEyeGetPreset, "{}").object,
              json(R"({"fishEyePreset":{"xPoint":0.123457,"yPoint":0.5,"zPoint":-0.1}})").object());
    const QJsonArray list = ask(LD_GetFishBoxListInfo, "{}").object["fishBoxList"].toArray();
    ASSERT_EQ(list.size(), 9);
    EXPECT_EQ(list[1].toObject()["yPoint"].toDouble(), 0.5);
    EXPECT_EQ(list[8].toObject(), json(R"({"id":8,"xPoint":0,"yPoint":0,"zPoint":0})").object());
    engine_double::answer("TP_FEC_GetParam", -1);
    EXPECT_TRUE(ask(LD_FishEyeGetPreset, "{}").object.isEmpty());
    ask(LD_Stop, "{}");
    EXPECT_EQ(ask(LD_FishEyeSetPreset, R"({"fishEyePreset":{"xPoint":0.25}})").message(),
              "setSubWindowPTZParam param error");
}
