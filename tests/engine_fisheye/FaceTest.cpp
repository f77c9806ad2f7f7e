#include "engine/core/Engine.h"
#include "host/clips/Room.h"
#include "tests/engine_present/Screen.h"

#include <QImage>

#include <atomic>
#include <limits>

namespace tide {

namespace {

using namespace std::chrono_literals;

constexpr int kWidth = 320;
constexpr int kHeight = 240;
constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr _TP_FISHEYEPARAM kStart{8, {}, 0.6F, 0.3F, {}, 0, 0, {}, {}};

class FisheyeFaceTest : public ::testing::Test
{
protected:
    FisheyeFaceTest()
    {
        screen_.unmap(hidden_);
        real_ = play();
    }
    ~FisheyeFaceTest() override { TP_Stop(real_); }

    int play(const _TP_EAGLEEYEPARAM* eagleEye = nullptr)
    {
        return TP_Play(FISHEYE_CLIPS "fisheye-ceiling.mp4", "", 0, hidden_, "", "", 1, nullptr, eagleEye, -1);
    }

    int view(int correct = 0x100)
    {
        windows_.push_back(screen_.window(kWidth, kHeight, 0, kWidth * static_cast<int>(windows_.size() % 5)));
        return TP_FEC_Play(real_, windows_.back(), &kStart, 3, correct);
    }

    static bool isShown(int id)
    {
        return eventually([id] { return Engine::instance().presenter().stats(id).shown > 0; });
    }

    Screen screen_;
    std::vector<Window> windows_;
    const Window hidden_ = screen_.window(16, 16);
    int real_ = -1;
};

int errorOf(int result)
{
    return result == -1 ? static_cast<int>(TP_GetLastError()) : TP_ERROR_NONE;
}

} // namespace

TEST_F(FisheyeFaceTest, BadArgumentsAreRefusedAndChangeNothing)
{
    const int id = view();
    const int whole = view(0);
    ASSERT_GT(whole, id);
    const TP_WId window = windows_[0];
    _TP_FISHEYEPARAM bad = kStart;
    bad.x = kNan;
    _TP_FISHEYEPARAM param{};
    const _TP_PTZPARAM at{0.5F, 0.5F}, infinite{0.5F, HUGE_VALF};
    float x = 0.25F, y = 0.75F, nan = kNan;
    int found = 7;
    _TP_SRTRANSFERELEMENT element{0.1F, 0, 0, 0};
    const _TP_SRTRANSFER turn{&element, 0}, empty{nullptr, 0};
    const _TP_EAGLEEYEPARAM block{true, 1, 0};
    const int eagleEye = play(&block);
    EXPECT_EQ(TP_SR_Rotate(eagleEye, &turn) + TP_Stop(eagleEye), 0);
    EXPECT_EQ(errorOf(TP_FEC_Play(id, window, &kStart, 3, 0)), TP_ERROR_NO_SUCH_ID);
    EXPECT_EQ(errorOf(TP_FEC_Play(real_, 0x7ffffff1, &kStart, 3, 0)), TP_ERROR_NO_WINDOW);
    EXPECT_EQ(errorOf(TP_FEC_Play(real_, window, nullptr, 3, 0)), TP_ERROR_BAD_ARGUMENT);
    EXPECT_EQ(errorOf(TP_FEC_Play(real_, window, &bad, 3, 0)), TP_ERROR_BAD_ARGUMENT);
    EXPECT_EQ(errorOf(TP_FEC_Play(real_, window, &kStart, 0, 0)), TP_ERROR_BAD_ARGUMENT);
    EXPECT_EQ(errorOf(TP_FEC_Play(real_, window, &kStart, 3, 0x101)), TP_ERROR_BAD_ARGUMENT);
    EXPECT_EQ(errorOf(TP_FEC_Play(real_, window, &kStart, 3, 0x500)), TP_ERROR_BAD_ARGUMENT);
    EXPECT_EQ(errorOf(TP_FEC_GetParam(real_, id, nullptr)), TP_ERROR_BAD_ARGUMENT);
    EXPECT_EQ(errorOf(TP_FEC_GetParam(real_ - 1, id, &param)), TP_ERROR_NO_SUCH_ID);
    EXPECT_EQ(errorOf(TP_FEC_UpDateParam(real_, id, nullptr)), TP_ERROR_BAD_ARGUMENT);
    EXPECT_EQ(errorOf(TP_FEC_UpDateParam(real_, id, &bad)), TP_ERROR_BAD_ARGUMENT);
    EXPECT_EQ(errorOf(TP_FEC_SetDrawType(real_, 3)), TP_ERROR_BAD_ARGUMENT);
    EXPECT_EQ(errorOf(TP_FEC_IsInFinshDraw(real_, nullptr, 0, 0)), TP_ERROR_BAD_ARGUMENT);
    EXPECT_EQ(errorOf(TP_FEC_IsInFinshDraw(real_, &found, kNan, 0)), TP_ERROR_BAD_ARGUMENT);
    EXPECT_EQ(errorOf(TP_FEC_IsInFinshDraw(real_, &found, 0.1F, 0.9F)), TP_ERROR_NO_SUCH_ID);
    EXPECT_EQ(errorOf(TP_FEC_PTZ2WindowEx(real_, id, id, &at, nullptr, &at, &x, &y)), TP_ERROR_BAD_ARGUMENT);
    EXPECT_EQ(errorOf(TP_FEC_PTZ2WindowEx(real_, id, id, &at, &at, &at, &x, nullptr)), TP_ERROR_BAD_ARGUMENT);
    EXPECT_EQ(errorOf(TP_FEC_PTZ2WindowEx(real_, id, id, &infinite, &at, &at, &x, &y)), TP_ERROR_BAD_ARGUMENT);
    EXPECT_EQ(errorOf(TP_FEC_PTZ2WindowEx(real_, whole, whole, &at, &at, &at, &x, &y)), TP_ERROR_WRONG_STATE);
    EXPECT_EQ(errorOf(TP_FEC_TestScan(real_, id, &nan, &y, 3, 0.01F)), TP_ERROR_BAD_ARGUMENT);
    EXPECT_EQ(errorOf(TP_FEC_TestScan(real_, id, &x, &y, 3, 1e30F)), TP_ERROR_BAD_ARGUMENT);
    EXPECT_EQ(errorOf(TP_FEC_TestScan(real_, id, &x, &y, 4, 0.01F)), TP_ERROR_BAD_ARGUMENT);
    EXPECT_EQ(errorOf(TP_FEC_TestScan(real_, whole, &x, &y, 3, 0.01F)), TP_ERROR_WRONG_STATE);
    EXPECT_EQ(errorOf(TP_FEC_CapturePIC(1, real_, id, "")), TP_ERROR_BAD_ARGUMENT);
    EXPECT_EQ(errorOf(TP_SR_Rotate(real_, nullptr)), TP_ERROR_BAD_ARGUMENT);
    EXPECT_EQ(errorOf(TP_SR_Rotate(real_, &empty)), TP_ERROR_BAD_ARGUMENT);
    EXPECT_EQ(errorOf(TP_SR_Rotate(real_, &turn)), TP_ERROR_WRONG_STATE);
    EXPECT_EQ(TP_FEC_GetParam(real_, id, &param), 0);
    EXPECT_EQ(param.x, kStart.x);
    EXPECT_EQ(x + y + static_cast<float>(found), 8.0F);
}

TEST_F(FisheyeFaceTest, WildNumbersAreBroughtIntoRange)
{
    const int id = view();
    _TP_FISHEYEPARAM wild{31, {}, -1e30F, 1e30F, {}, 1e30F, 1e30F, {0, 200, 0, 0}, {}};
    EXPECT_EQ(TP_FEC_UpDateParam(real_, id, &wild), 0);
    _TP_FISHEYEPARAM kept{};
    ASSERT_EQ(TP_FEC_GetParam(real_, id, &kept), 0);
    EXPECT_NEAR(std::hypot(kept.x - 0.5, kept.y - 0.5), 0.5, 1e-6);
    EXPECT_EQ(kept.z, kNarrowestZoom);
    EXPECT_LE(std::abs(kept.angle), 3.15F);
    EXPECT_EQ(kept.color[1], 200);
    wild.mask = 2, wild.z = 0.1F;
    EXPECT_EQ(TP_FEC_UpDateParam(real_, id, &wild), 0);
    TP_FEC_GetParam(real_, id, &kept);
    EXPECT_EQ(kept.z, 0.1F);
    EXPECT_LT(kept.x, 0.2F);
}

TEST_F(FisheyeFaceTest, AViewIsStoppedByItselfOrWithItsStreamAndHearsItsMessages)
{
    static std::atomic<int> ended{0}; // the sum of the ids that have sent their message
    TP_SetMessageHandler([](int id, unsigned message, void*) { ended += message == TP_MESSAGE_ENDED ? id : 0; },
                         nullptr);
    std::atomic<int> draws{0};
    const int first = view();
    const int second = view(0x300);
    const auto count = [](void* user, unsigned, unsigned, void*, unsigned, unsigned) {
        ++*static_cast<std::atomic<int>*>(user);
    };
    EXPECT_EQ(TP_FECRigisterDrawFun(real_, first, count, &draws), 0);
    EXPECT_TRUE(isShown(first) && isShown(second));
    EXPECT_GT(draws, 0);
    EXPECT_EQ(Engine::instance().presenter().stats(real_).shown, 0U) << "nobody sees the stream's own window";
    int width = 0, height = 0;
    EXPECT_EQ(TP_GetPictureSize(first, &width, &height), 0);
    EXPECT_EQ(width, 1024);
    const _TP_REGION part{0, 0, 512, 512};
    EXPECT_EQ(TP_SetDisplayRegion(first, 0, &part, windows_[0], 1), 0);
    EXPECT_EQ(TP_SetDisplayRegion(first, 0, &part, windows_[1], 1), -1);
    for (int i = 0; i < 3; ++i)
        TP_Fast(first); // the stream's own speed
    EXPECT_EQ(TP_GetScale(real_), 8.0F);
    EXPECT_TRUE(eventually([&] { return ended == real_ + first + second; }));
    EXPECT_EQ(TP_Stop(first), 0);
    const int drawn = draws;
    EXPECT_EQ(TP_Stop(first), -1);
    _TP_FISHEYEPARAM param{};
    EXPECT_EQ(TP_FEC_GetParam(real_, first, &param), -1);
    EXPECT_EQ(TP_FEC_GetParam(real_, second, &param), 0);
    EXPECT_EQ(TP_Stop(real_), 0);
    EXPECT_EQ(TP_Stop(second), -1);
    EXPECT_EQ(TP_FEC_Play(real_, windows_[0], &kStart, 3, 0), -1);
    EXPECT_EQ(draws, drawn);
    TP_SetMessageHandler(nullptr, nullptr);
}

TEST_F(FisheyeFaceTest, ASavedPictureIsWhatTheRoomLooksLikeFromThere)
{
    const int id = view();
    ASSERT_TRUE(isShown(id));
    const std::string path = ::testing::TempDir() + "fisheye-view.bmp";
    ASSERT_EQ(TP_FEC_CapturePIC(1, real_, id, path.c_str()), 0);
    const QImage saved(QString::fromStdString(path));
    ASSERT_EQ(saved.size(), QSize(1365, 1024));
    ViewParam param;
    param.x = kStart.x, param.y = kStart.y;
    const ViewGeometry geometry(PlaceType::Ceiling, CorrectType::View, param, {kWidth, kHeight, {}});
    int right = 0, all = 0;
    for (int y = 16; y < 1024; y += 32) {
        for (int x = 16; x < 1365; x += 32) {
            const auto scene = geometry.sceneAt({(x + 0.5) / 1365, (y + 0.5) / 1024});
            if (!scene)
                continue;
            const room::Vector inRoom = room::toRoom(room::Mount::Ceiling, {scene->x, scene->y, scene->z});
            const room::Colour expected = room::colourAt(room::Mount::Ceiling, inRoom);
            const QColor there = saved.pixelColor(x, y);
            ++all;
            right += std::abs(there.red() - expected.red) + std::abs(there.green() - expected.green) +
                         std::abs(there.blue() - expected.blue) <
                     40;
        }
    }
    EXPECT_GT(all, 1000);
    EXPECT_GT(right, all * 9 / 10); // but for the edges of tiles and the balls
}

TEST_F(FisheyeFaceTest, ViewsComeAndGoWhileTheyAreDrawnAndTurned)
{
    std::atomic<bool> goesOn{true};
    std::atomic<int> last{0};
    const int whole = view(0);
    for (int i = 0; i < 3; ++i)
        last = view();
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 2; ++thread) {
        threads.emplace_back([&, thread] {
            _TP_FISHEYEPARAM param{};
            for (int i = 0; goesOn; ++i) {
                const int id = last;
                int box = -1;
                param.mask = 8, param.x = 0.3F, param.y = 0.4F;
                TP_FEC_TestScan(real_, id, &param.x, &param.y, 3, 0.01F);
                TP_FEC_UpDateParam(real_, id, &param);
                TP_FEC_SetDrawType(real_, i % 3);
                TP_FEC_SetFinshDraw(real_, thread == 0 ? id : whole);
                TP_FEC_IsInFinshDraw(real_, &box, 0.6F, 0.3F);
                std::this_thread::sleep_for(1ms);
            }
        });
    }
    const TimePoint end = Clock::now() + 1500ms;
    while (Clock::now() < end) {
        const int made = TP_FEC_Play(real_, windows_[3], &kStart, 3, 0x100);
        EXPECT_EQ(TP_Stop(last.exchange(made)), 0);
        std::this_thread::sleep_for(20ms);
    }
    EXPECT_EQ(TP_Stop(real_), 0);
    goesOn = false;
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(TP_Stop(last), -1);
}

} // namespace tide
