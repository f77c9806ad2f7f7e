#include "tests/engine_present/FakeSource.h"
#include "tests/engine_present/Screen.h"

#include <array>

namespace tide {

namespace {

using namespace std::chrono_literals;

// Limited range 601.
constexpr Colour kRed{255, 0, 0};
constexpr Colour kBlue{0, 0, 255};
constexpr Colour kGreen{0, 255, 0};
const Fill redFill = solid(81, 90, 240);
const Fill blueFill = solid(41, 240, 110);

FramePtr red(int width = 64, int height = 48)
{
    return makeFrame(width, height, AV_PIX_FMT_YUV420P, redFill);
}

FramePtr blue()
{
    return makeFrame(64, 48, AV_PIX_FMT_YUV420P, blueFill);
}

// Left half red, right half blue.
FramePtr twoHalves(int width, int height)
{
    return makeFrame(width, height, AV_PIX_FMT_YUV420P, [width](int plane, int x, int y) {
        return (x < (plane == 0 ? width / 2 : width / 4) ? redFill : blueFill)(plane, x, y);
    });
}

void paintGreen(void*)
{
    glColor4f(0.0F, 1.0F, 0.0F, 1.0F);
    glRectf(-1.0F, -1.0F, 1.0F, 1.0F);
}

#ifdef __SANITIZE_ADDRESS__
constexpr long kMostGrowth = 256 * 256; // freed memory is kept for a while
#else
constexpr long kMostGrowth = 4 * 256;
#endif

// Descriptors, threads and resident pages of the process.
std::array<long, 3> held()
{
    const auto countIn = [](const char* folder) {
        return std::distance(std::filesystem::directory_iterator(folder), {});
    };
    long size = 0, resident = 0;
    std::ifstream("/proc/self/statm") >> size >> resident;
    return {countIn("/proc/self/fd"), countIn("/proc/self/task"), resident};
}

class PresenterTest : public ::testing::Test
{
protected:
    // The last connection that is closed takes the driver with it; a report of the leak checker can name it only while
    // it is there.
    static void SetUpTestSuite()
    {
        static Display* const keeper = XOpenDisplay(nullptr);
        int count = 0;
        XFree(glXGetFBConfigs(keeper, 0, &count));
    }

    std::shared_ptr<FakeSource> show(int id, Window window, FramePtr frame)
    {
        auto source = std::make_shared<FakeSource>();
        source->put(std::move(frame));
        EXPECT_TRUE(presenter_.add(id, window, source));
        return source;
    }

    void put(FakeSource& source, FramePtr frame)
    {
        source.put(std::move(frame));
        presenter_.wake();
    }

    Screen screen_;
    const Window window_ = screen_.window(60, 60);
    Presenter presenter_;
};

} // namespace

TEST_F(PresenterTest, RefusesWhatItCannotShow)
{
    auto source = std::make_shared<FakeSource>();
    EXPECT_FALSE(presenter_.add(1, 0x7fffffff, source));
    EXPECT_FALSE(presenter_.add(1, window_, nullptr));
    EXPECT_TRUE(presenter_.add(1, window_, source));
    EXPECT_FALSE(presenter_.add(1, window_, source)) << "the id is taken";
    EXPECT_FALSE(presenter_.setRegion(2, std::nullopt) || presenter_.setHook(2, {}));

    const std::string display = getenv("DISPLAY");
    setenv("DISPLAY", ":4711", 1);
    Presenter blind;
    EXPECT_FALSE(blind.add(1, window_, source));
    setenv("DISPLAY", display.c_str(), 1);
    EXPECT_TRUE(blind.add(1, window_, source)) << "a display that came later is found";
}

TEST_F(PresenterTest, LeavesTheBackgroundAloneUntilTheFirstPicture)
{
    auto source = std::make_shared<FakeSource>();
    ASSERT_TRUE(presenter_.add(1, window_, source));
    presenter_.setHook(1, &paintGreen);
    std::this_thread::sleep_for(200ms);
    EXPECT_TRUE(isNear(screen_.at(window_, 30, 30), Screen::kBackgroundColour));
    screen_.clear(window_); // what stood there is lost
    EXPECT_TRUE(screen_.shows(window_, 30, 30, Colour{0, 0, 0}));
    presenter_.setHook(1, {});
    put(*source, red());
    EXPECT_TRUE(screen_.shows(window_, 30, 30, kRed));
}

constexpr auto k601 = AVCOL_SPC_SMPTE170M, k709 = AVCOL_SPC_BT709;
constexpr auto kLimited = AVCOL_RANGE_MPEG, kFull = AVCOL_RANGE_JPEG, kUnsaid = AVCOL_RANGE_UNSPECIFIED;

const struct
{
    AVPixelFormat format;
    AVColorSpace space;
    AVColorRange range;
    int first, second, third;
    Colour expected;
} kFormats[] = {{AV_PIX_FMT_YUV420P, AVCOL_SPC_FCC, kUnsaid, 81, 90, 240, kRed},
                {AV_PIX_FMT_YUV420P, k709, kLimited, 63, 102, 240, kRed},
                {AV_PIX_FMT_YUV420P, AVCOL_SPC_BT2020_NCL, kLimited, 74, 97, 240, kRed},
                {AV_PIX_FMT_YUV420P, k601, kFull, 76, 85, 255, kRed},
                {AV_PIX_FMT_YUVJ420P, k601, kUnsaid, 29, 255, 107, kBlue},
                {AV_PIX_FMT_YUV422P, k601, kLimited, 145, 54, 34, kGreen},
                {AV_PIX_FMT_YUV444P, k601, kLimited, 41, 240, 110, kBlue},
                {AV_PIX_FMT_YUV411P, k601, kLimited, 145, 54, 34, kGreen},
                {AV_PIX_FMT_NV12, k601, kLimited, 41, 240, 110, kBlue},
                {AV_PIX_FMT_NV12, k709, kFull, 54, 99, 255, kRed},
                {AV_PIX_FMT_YUV420P10LE, k709, kLimited, 63, 102, 240, kRed},
                {AV_PIX_FMT_YUV444P10LE, k601, kFull, 76, 85, 255, kRed},
                {AV_PIX_FMT_YUYV422, k601, kLimited, 145, 54, 34, kGreen},
                {AV_PIX_FMT_RGB24, AVCOL_SPC_RGB, kFull, 200, 100, 50, Colour{200, 100, 50}},
                {AV_PIX_FMT_GBRP, AVCOL_SPC_RGB, kFull, 10, 250, 120, Colour{10, 250, 120}},
                {AV_PIX_FMT_GRAY8, k601, kFull, 90, 0, 0, Colour{90, 90, 90}}};

// Odd on purpose, with lines longer than the picture; the large one goes up in planes whatever the renderer.
TEST_F(PresenterTest, EveryFormatHasItsColoursInEveryCorner)
{
    const Window window = screen_.window(70, 54);
    int id = 0;
    for (const auto& row : kFormats) {
        for (const auto& [width, height] : {std::pair{35, 27}, {2051, 1081}}) {
            FramePtr frame = makeFrame(width, height, row.format, solid(row.first, row.second, row.third));
            frame->colorspace = row.space;
            frame->color_range = row.range;
            screen_.clear(window);
            show(++id, window, std::move(frame));
            for (const auto& [x, y] : {std::pair{0, 0}, {69, 0}, {0, 53}, {69, 53}, {35, 27}})
                EXPECT_TRUE(screen_.shows(window, x, y, row.expected)) << row.format << ' ' << width;
            presenter_.remove(id);
        }
    }
}

TEST_F(PresenterTest, FollowsTheSizesAnExposureAndUnusualLines)
{
    const Window window = screen_.window(80, 60);
    auto source = show(1, window, red(64, 48));
    ASSERT_TRUE(screen_.shows(window, 79, 59, kRed));
    put(*source, twoHalves(320, 24));
    ASSERT_TRUE(screen_.shows(window, 79, 59, kBlue));
    screen_.clear(window);
    EXPECT_TRUE(screen_.shows(window, 79, 59, kBlue));
    screen_.resize(window, 160, 120);
    EXPECT_TRUE(screen_.shows(window, 159, 119, kBlue));
    EXPECT_TRUE(screen_.shows(window, 60, 100, kRed));

    FramePtr upsideDown = makeFrame(32, 32, AV_PIX_FMT_YUV420P, [](int plane, int, int y) {
        return (y < (plane == 0 ? 16 : 8) ? redFill : blueFill)(plane, 0, 0);
    });
    for (int plane = 0; plane < 3; ++plane) {
        upsideDown->data[plane] += upsideDown->linesize[plane] * ((plane == 0 ? 32 : 16) - 1);
        upsideDown->linesize[plane] *= -1;
    }
    put(*source, std::move(upsideDown));
    EXPECT_TRUE(screen_.shows(window, 159, 2, kBlue));
    EXPECT_TRUE(screen_.shows(window, 2, 117, kRed));

    put(*source, FramePtr(av_frame_alloc()));
    put(*source, red(1, 1));
    EXPECT_TRUE(screen_.shows(window, 159, 2, kRed)) << "a picture without a size is passed over";
}

TEST_F(PresenterTest, OneSourceFillsSeveralWindowsEachWithItsRegion)
{
    const Window other = screen_.window(70, 30, 0, 100, 0);
    auto source = show(1, window_, twoHalves(64, 48));
    ASSERT_TRUE(screen_.shows(window_, 58, 30, kBlue));
    EXPECT_TRUE(presenter_.add(2, other, source)) << "shows the picture that stands";
    EXPECT_TRUE(screen_.shows(other, 68, 15, kBlue));
    const struct
    {
        std::optional<Region> region;
        Colour left, right;
    } rows[] = {{Region{4, 4, 28, 40}, kRed, kRed},
                {Region{48, -100, 1000, 100}, kBlue, kBlue}, // clipped to the picture
                {Region{1000, 0, 2000, 10}, kRed, kBlue},    // outside of the picture: the whole
                {Region{48, 0, 64, 48}, kBlue, kBlue},
                {std::nullopt, kRed, kBlue}};
    for (const auto& row : rows) {
        EXPECT_TRUE(presenter_.setRegion(2, row.region));
        EXPECT_TRUE(screen_.shows(other, 2, 2, row.left));
        EXPECT_TRUE(screen_.shows(other, 67, 27, row.right));
        EXPECT_TRUE(isNear(screen_.at(window_, 2, 2), kRed));
    }
    presenter_.remove(1);
    put(*source, blue());
    EXPECT_TRUE(screen_.shows(other, 2, 15, kBlue));
    EXPECT_EQ(source->taken(), 2);
}

TEST_F(PresenterTest, TheHookDrawsOverThePictureInCleanState)
{
    auto source = show(1, window_, red());
    std::atomic<int> surprises{0};
    presenter_.setHook(1, [&](void* context) {
        GLint viewport[4] = {};
        glGetIntegerv(GL_VIEWPORT, viewport);
        GLfloat modelview[16] = {};
        glGetFloatv(GL_MODELVIEW_MATRIX, modelview);
        surprises += context == nullptr || viewport[2] != 60 || viewport[3] != 60 || glIsEnabled(GL_BLEND) == GL_TRUE ||
                     modelview[0] != 1.0F || modelview[12] != 0.0F || glGetError() != GL_NO_ERROR;
        glColor4f(0.0F, 1.0F, 0.0F, 1.0F);
        glRectf(-1.0F, 0.0F, 0.0F, 1.0F); // the upper left quarter
        glColor4f(0.0F, 1.0F, 0.0F, 0.5F);
        glRectf(0.0F, 0.0F, 1.0F, 1.0F);

        // Leaves everything as it should not.
        glTranslatef(0.5F, 0.5F, 0.0F);
        glViewport(1, 2, 3, 4);
        glPushAttrib(GL_ENABLE_BIT);
        glEnable(GL_SCISSOR_TEST);
        glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_FALSE);
        glPixelStorei(GL_UNPACK_ROW_LENGTH, 3);
        glEnable(GL_BLEND);
        glEnable(static_cast<GLenum>(0xdead));
    });
    ASSERT_TRUE(screen_.shows(window_, 10, 10, kGreen));
    EXPECT_TRUE(screen_.shows(window_, 50, 10, kGreen)) << "nothing is blended unless the hook asks for it";
    EXPECT_TRUE(screen_.shows(window_, 10, 50, kRed));
    put(*source, blue());
    EXPECT_TRUE(screen_.shows(window_, 10, 50, kBlue));
    EXPECT_TRUE(screen_.shows(window_, 50, 50, kBlue));
    EXPECT_TRUE(screen_.shows(window_, 10, 10, kGreen));
    EXPECT_EQ(surprises, 0);
}

TEST_F(PresenterTest, AStandingPictureIsDrawnAboutTenTimesASecondForItsHook)
{
    show(1, window_, red());
    ASSERT_TRUE(screen_.shows(window_, 30, 30, kRed));
    std::atomic<int> calls{0};
    presenter_.setHook(1, [&](void*) {
        ++calls;
        paintGreen(nullptr);
    });
    EXPECT_TRUE(screen_.shows(window_, 30, 30, kGreen));
    calls = 0;
    std::this_thread::sleep_for(1s);
    EXPECT_GE(calls, 5);
    EXPECT_LE(calls, 12);
    presenter_.setHook(1, {});
    EXPECT_TRUE(screen_.shows(window_, 30, 30, kRed)) << "what the hook drew has gone";
}

TEST_F(PresenterTest, NoHookRunsAfterRemoveOrReplacement)
{
    for (int round = 0; round < 20; ++round) {
        auto source = show(1, window_, red());
        std::atomic<bool> gone{false};
        std::atomic<int> calls{0};
        std::atomic<int> late{0};
        const auto hook = [&](void*) {
            ++calls;
            std::this_thread::sleep_for(3ms);
            late += gone ? 1 : 0;
        };
        presenter_.setHook(1, hook);
        ASSERT_TRUE(eventually([&] {
            put(*source, blue());
            return calls > 1;
        }));
        if (round % 2 == 0)
            presenter_.remove(1);
        else
            presenter_.setHook(1, [](void*) {});
        gone = true;
        put(*source, red());
        std::this_thread::sleep_for(5ms);
        presenter_.remove(1);
        EXPECT_EQ(late, 0);
        EXPECT_EQ(source.use_count(), 1) << "the presenter has let go of the source";
    }
}

TEST_F(PresenterTest, WindowsMayDieAtAnyTime)
{
    const Window parent = screen_.window(300, 300);
    const Window survivor = screen_.window(50, 50, 0, 400, 0);
    auto watched = show(1, survivor, red());
    for (int round = 0; round < 15; ++round) {
        const Window window = screen_.window(60, 60, parent, 5, 5);
        auto source = show(2, window, red());
        presenter_.setHook(2, [&](void*) {
            if (round % 3 == 0)
                screen_.destroy(window);
        });
        put(*source, blue());
        std::this_thread::sleep_for(std::chrono::milliseconds(round));
        if (round % 3 == 1)
            screen_.destroy(window);
        put(*source, red());
        presenter_.windowChanged(window);
        EXPECT_TRUE(eventually([&] { return source->taken() + source->dropped() == 3; })) << "the stream goes on";
        presenter_.remove(2);
    }
    put(*watched, blue());
    EXPECT_TRUE(screen_.shows(survivor, 20, 20, kBlue));
}

TEST_F(PresenterTest, ErrorsOfOtherConnectionsGoToTheirHandler)
{
    static std::atomic<int> errors{0};
    const Window window = screen_.window(20, 20);
    auto source = show(1, window, red());
    // Each surface has to stand first: while the driver makes one it has a handler of its own.
    ASSERT_TRUE(screen_.shows(window, 10, 10, kRed));
    const XErrorHandler engines = XSetErrorHandler(nullptr);
    XSetErrorHandler([](Display*, XErrorEvent*) {
        ++errors;
        return 0;
    });
    EXPECT_NE(engines, nullptr);
    const Window another = screen_.window(20, 20);
    EXPECT_TRUE(presenter_.add(2, another, source)) << "which puts the guard back over the host's handler";
    ASSERT_TRUE(screen_.shows(another, 10, 10, kRed));
    screen_.destroy(another);
    screen_.destroy(window);
    EXPECT_EQ(errors, 0);
    screen_.destroy(window);
    EXPECT_EQ(errors, 1);
}

TEST_F(PresenterTest, WhatNobodySeesIsTakenButNotDrawn)
{
    const Window parent = screen_.window(200, 200);
    const Window window = screen_.window(80, 80, parent);
    auto source = show(1, window, red());
    ASSERT_TRUE(screen_.shows(window, 40, 40, kRed));
    const auto playUnseen = [&] {
        std::this_thread::sleep_for(50ms);
        const std::uint64_t before = presenter_.stats(1).shown;
        const int taken = source->taken();
        for (int i = 0; i < 5; ++i) // each is taken in its time, though only the first wakes
            source->put(i == 4 ? blue() : red(), Clock::now() + i * 20ms);
        presenter_.wake();
        EXPECT_TRUE(eventually([&] { return source->taken() + source->dropped() == taken + 5; }));
        EXPECT_EQ(presenter_.stats(1).shown, before);
    };
    screen_.unmap(parent);
    playUnseen();
    EXPECT_FALSE(source->isWatched());
    screen_.map(parent);
    EXPECT_TRUE(screen_.shows(window, 40, 40, kBlue)) << "the newest picture, not the one that was seen last";
    EXPECT_TRUE(source->isWatched());
    const Window cover = screen_.window(300, 300);
    playUnseen();
    EXPECT_FALSE(source->isWatched());
    const Window other = screen_.window(90, 90);
    EXPECT_TRUE(presenter_.add(2, other, source));
    EXPECT_TRUE(eventually([&] { return source->isWatched(); })) << "one of two windows is seen";
    screen_.unmap(other);
    EXPECT_TRUE(eventually([&] { return !source->isWatched(); }));
    screen_.unmap(cover);
    EXPECT_TRUE(screen_.shows(window, 40, 40, kBlue));
}

TEST_F(PresenterTest, ManyStartsAndStopsLeakNothing)
{
    const Window parent = screen_.window(400, 400);
    const auto cycle = [&](int times) {
        for (int i = 0; i < times; ++i) {
            const Window window = screen_.window(300, 300, parent);
            show(1, window, red(352, 288));
            presenter_.setHook(1, &paintGreen);
            ASSERT_TRUE(eventually([&] { return presenter_.stats(1).shown == 1; }));
            if (i % 2 == 0)
                screen_.destroy(window);
            presenter_.remove(1);
            if (i % 2 == 1)
                screen_.destroy(window);
        }
    };
    cycle(20);
    const auto [descriptors, threads, pages] = held();
    cycle(150);
    const auto after = held();
    EXPECT_EQ(after[0], descriptors);
    EXPECT_EQ(after[1], threads);
    EXPECT_LT(after[2] - pages, kMostGrowth) << "a window's back buffer and planes are half a megabyte";
}

} // namespace tide
