#include "tests/support/Engine.h"

#include <atomic>
#include <climits>
#include <vector>

namespace {

using namespace std::chrono_literals;
using engine_test::eventually;

constexpr char kPattern[] = "test:pattern?size=160x120&rate=25";

using FaceTest = engine_test::WindowTest;

TEST_F(FaceTest, UnknownIdsAreRefusedByEveryFunction)
{
    ASSERT_EQ(TP_InitLib("."), 0);
    for (const int id : {-1, 0, 1 << 30, INT_MIN, INT_MAX}) {
        int width = 5, height = 6;
        _TP_OSDTIME time{};
        // clang-format off
        const std::vector<int> results{
            TP_Stop(id), TP_Pause(id), TP_Resume(id), TP_Fast(id), TP_Slow(id), TP_FrameForward(id),
            TP_GetPictureSize(id, &width, &height), TP_SetReconnectInfo(id, ""),
            TP_SetDisplayRegion(id, 0, nullptr, 0, 1), TP_RigisterDrawFun(id, nullptr, nullptr),
            TP_EnableIVS(id, 1, 1), TP_RenderPrivateDataEx(id, 16, 1, 1), TP_SetOverlayPriInfoFlag(id, 32, 1),
            TP_RegAdditionFun(id, 2049, nullptr, nullptr), TP_StartSave(id, "f", 2), TP_StopSave(id),
            TP_JPEGCapture(id, "f"), TP_BMPCapture(id, "f"), TP_GetOSDTime(id, &time), TP_OpenSound(id),
            TP_SetVolume(id, 1), TP_GetVolume(id)};
        // clang-format on
        EXPECT_EQ(results, std::vector<int>(results.size(), -1));
        EXPECT_EQ(TP_GetLastError(), TP_ERROR_NO_SUCH_ID);
        EXPECT_EQ(TP_GetScale(id), 0.0F);
        EXPECT_EQ(width + height, 11);
    }
}

TEST_F(FaceTest, BadPlaysAreRefusedAtOnce)
{
    const TP_WId window = window_.winId();
    struct Row
    {
        const char *url, *auth, *start, *stop;
        TP_WId window;
        unsigned error;
    };
    const Row rows[] = {{nullptr, nullptr, nullptr, nullptr, window, TP_ERROR_BAD_ARGUMENT},
                        {"concat:a|b", "", "", "", window, TP_ERROR_BAD_ARGUMENT},
                        {kPattern, "a\r\nb", "", "", window, TP_ERROR_BAD_ARGUMENT},
                        {kPattern, "", "tomorrow", "", window, TP_ERROR_BAD_ARGUMENT},
                        {kPattern, "", "", "never", window, TP_ERROR_BAD_ARGUMENT},
                        {"test:pattern?size=0x0", "", "", "", window, TP_ERROR_BAD_ARGUMENT},
                        {"test:pattern?seconds=99999999999999999999", "", "", "", window, TP_ERROR_BAD_ARGUMENT},
                        {kPattern, "", "", "", 0, TP_ERROR_NO_WINDOW},
                        {kPattern, "", "", "", 0x7ffffff1, TP_ERROR_NO_WINDOW},
                        {kPattern, "", "", "", ULONG_MAX, TP_ERROR_NO_WINDOW}};
    for (const Row& row : rows) {
        EXPECT_EQ(TP_Play(row.url, row.auth, 0, row.window, row.start, row.stop, 0, nullptr, nullptr, -1), -1);
        EXPECT_EQ(TP_GetLastError(), row.error) << (row.url ? row.url : "null");
        EXPECT_EQ(TP_ReversePlay(row.url, row.auth, 0, row.window, row.start, row.stop), -1);
    }
    for (const int frames : {INT_MIN, 0, INT_MAX, 6})
        EXPECT_EQ(TP_SetDisplayBuf(frames), 0);
}

TEST_F(FaceTest, RegionIsTheSameThroughEitherWindowAndBadOnesChangeNothing)
{
    const int id = play(kPattern);
    int width = 0, height = 0;
    ASSERT_TRUE(eventually([&] { return TP_GetPictureSize(id, &width, &height) == 0; }, 5s));
    EXPECT_EQ(std::pair(width, height), std::pair(160, 120));
    EXPECT_EQ(TP_GetPictureSize(id, nullptr, &height), -1);
    const TP_WId own = window_.winId();
    const _TP_REGION good{0, 0, 160, 120};
    for (const TP_WId window : {TP_WId(0), own})
        EXPECT_EQ(TP_SetDisplayRegion(id, 0, &good, window, 1) + TP_SetDisplayRegion(id, 0, nullptr, window, 1), 0);
    EXPECT_EQ(TP_SetDisplayRegion(id, 0, &good, own + 1, 1), -1);
    for (const _TP_REGION& region : {_TP_REGION{0, 0, 0, 0}, _TP_REGION{80, 0, 40, 120}, _TP_REGION{0, 0, 161, 120},
                                     _TP_REGION{-1, 0, 10, 10}, _TP_REGION{LLONG_MIN, LLONG_MIN, LLONG_MAX, LLONG_MAX}})
        EXPECT_NE(TP_SetDisplayRegion(id, 0, &region, 0, 1), 0);
    TP_Stop(id);
}

TEST_F(FaceTest, OverlaySwitchesDoNotFillTheMemory)
{
    const int id = play(kPattern);
    int refused = 0;
    for (int selector = 0; selector < 100000; ++selector)
        refused += TP_EnableIVS(id, selector, 1) == -1;
    EXPECT_GT(refused, 90000);
    EXPECT_EQ(TP_EnableIVS(id, 0, 0), 0); // those that there are can be changed
    EXPECT_EQ(TP_RenderPrivateDataEx(id, 0, 4, 1), -1);
    EXPECT_EQ(TP_SetOverlayPriInfoFlag(id, 0, 1), -1);
    TP_Stop(id);
}

struct Hooked
{
    std::atomic<int> draws{0};
    std::atomic<int> stopAt{INT_MAX};
    static void draw(int id, void*, void* user)
    {
        auto& self = *static_cast<Hooked*>(user);
        if (++self.draws == self.stopAt) {
            EXPECT_EQ(TP_Stop(id), 0);
        }
    }
};

TEST_F(FaceTest, NoHookRunsAfterStop)
{
    for (int round = 0; round < 10; ++round) {
        Hooked hooked;
        const int id = play(kPattern);
        EXPECT_EQ(TP_RigisterDrawFun(id, &Hooked::draw, &hooked), 0);
        ASSERT_TRUE(eventually([&] { return hooked.draws > 1; }, 5s));
        EXPECT_EQ(TP_Stop(id), 0);
        const int until = hooked.draws;
        std::this_thread::sleep_for(60ms);
        EXPECT_EQ(hooked.draws, until);
        EXPECT_EQ(TP_Stop(id), -1);
    }
}

TEST_F(FaceTest, HooksAndHandlersMayStopTheirOwnStream)
{
    Hooked hooked;
    hooked.stopAt = 3;
    const int id = play(kPattern);
    TP_RigisterDrawFun(id, &Hooked::draw, &hooked);
    EXPECT_TRUE(eventually([&] { return TP_GetScale(id) == 0.0F; }, 5s));
    EXPECT_EQ(hooked.draws, 3);

    static std::atomic<int> stopped{0};
    TP_SetMessageHandler([](int told, unsigned, void*) { stopped += TP_Stop(told) == 0 ? 1 : 0; }, nullptr);
    const int other = play("/does/not/exist");
    EXPECT_TRUE(eventually([] { return stopped == 1; }, 5s));
    EXPECT_EQ(TP_Stop(other), -1);
}

TEST_F(FaceTest, ManyThreadsPlayAndStopAtOnce)
{
    std::atomic<int> failures{0};
    std::vector<std::thread> threads;
    const TP_WId window = window_.winId();
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&, t] {
            const char* urls[] = {kPattern, "rtsp://127.0.0.1:9/x", "/none", kPattern};
            for (int i = 0; i < 40; ++i) {
                const int id = TP_Play(urls[(t + i) % 4], "", i % 6, window, "", "", 0, nullptr, nullptr, -1);
                TP_Pause(id), TP_FrameForward(id), TP_Fast(id), TP_Resume(id);
                failures += TP_Stop(id) != 0;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(failures, 0);
}

using FaceDeathTest = FaceTest;

TEST_F(FaceDeathTest, ProcessMayLeaveWhileStreamsRun)
{
    ::testing::FLAGS_gtest_death_test_style = "threadsafe"; // a fresh process, since the engine has threads
    const auto leave = [this] {
        play("rtsp://127.0.0.1:9/x");
        for (int i = 0; i < 40; ++i) // so many that it is in the middle of drawing when the driver goes
            play("test:pattern?size=320x240&rate=30");
        std::this_thread::sleep_for(300ms);
        std::exit(7);
    };
    EXPECT_EXIT(leave(), ::testing::ExitedWithCode(7), "");
}

} // namespace
