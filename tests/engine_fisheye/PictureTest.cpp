#include "engine/present/fisheye/EagleEye.h"
#include "engine/present/fisheye/FisheyeViews.h"
#include "tests/engine_present/FakeSource.h"
#include "tests/engine_present/Screen.h"

namespace tide {

namespace {

constexpr int kSide = 1080; // of the picture
constexpr int kWidth = 704;
constexpr int kHeight = 576;
constexpr Colour kBlack{0, 0, 0};

// Each pixel tells where it is: red across, green down.
FramePtr coordinates(const std::function<int(int)>& told)
{
    return makeFrame(kSide, kSide, AV_PIX_FMT_RGB24,
                     [&](int plane, int x, int y) { return plane == 2 ? 0 : told(plane == 0 ? x : y); });
}

// So steep that a place is told to two pixels.
int wave(double at)
{
    return static_cast<int>(std::abs(std::fmod(2 * at, 510) - 255));
}

ViewParam paramAt(Point position, float z = kWidestZoom)
{
    return {static_cast<float>(position.x), static_cast<float>(position.y), z, 0, {0, 0, 255, 255}};
}

class FisheyePictureTest : public ::testing::Test
{
protected:
    Window show(int id, CorrectType correct, PlaceType place, Point position, float z = kWidestZoom, int width = kWidth,
                int height = kHeight)
    {
        const Window window = screen_.window(width, height, 0, 720 * ((id - 1) % 2), height < 400 ? 600 : 0);
        EXPECT_TRUE(presenter_.add(id, window, source_, views_->add(id, place, correct, paramAt(position, z))));
        return window;
    }

    void put(FramePtr frame)
    {
        source_->put(std::move(frame));
        presenter_.wake();
    }

    template <typename Change> void change(int id, Change how)
    {
        const auto before = presenter_.stats(id);
        views_->update(id, [&](ViewParam param) { return how(param), std::optional(param); });
        presenter_.refresh({id});
        EXPECT_TRUE(eventually([&] { return presenter_.stats(id).redrawn > before.redrawn; }));
    }

    void waitForPicture(int id)
    {
        EXPECT_TRUE(eventually([&] { return presenter_.stats(id).shown > 0; }));
    }

    void expectSpot(Window window, Point at) // the middle of what is bright
    {
        const auto pixels = screen_.read(window, 0, 0, kWidth, kHeight);
        double x = 0, y = 0, count = 0;
        for (std::size_t i = 0; i < pixels.size(); ++i) {
            if (pixels[i].red >= 128)
                x += static_cast<double>(i % kWidth) + 0.5, y += static_cast<double>(i / kWidth) + 0.5, ++count;
        }
        EXPECT_NEAR(x / count, at.x * kWidth, 2);
        EXPECT_NEAR(y / count, at.y * kHeight, 2);
    }

    Screen screen_;
    Presenter presenter_;
    std::shared_ptr<FakeSource> source_ = std::make_shared<FakeSource>();
    std::shared_ptr<FisheyeViews> views_ = std::make_shared<FisheyeViews>();
};

} // namespace

TEST_F(FisheyePictureTest, AScenePointGoesWithThePointerToTwoPixels)
{
    for (const PlaceType place : {PlaceType::Wall, PlaceType::Floor, PlaceType::Ceiling}) {
        const int id = static_cast<int>(place);
        const Point start{0.62, 0.33};
        const Point from{0.3, 0.4};
        const Point to{0.66, 0.55};
        const Ray mark = *ViewGeometry(place, CorrectType::View, {0.62F, 0.33F}, {kWidth, kHeight, {}}).sceneAt(from);
        put(makeFrame(kSide, kSide, AV_PIX_FMT_RGB24, [&](int, int x, int y) {
            return dot(LensModel().sceneAt({(x + 0.5) / kSide, (y + 0.5) / kSide}), mark) > std::cos(0.012) ? 255 : 0;
        }));
        const Window window = show(id, CorrectType::View, place, start);
        waitForPicture(id);
        expectSpot(window, from);
        Point position;
        ASSERT_EQ(views_->drag(id, id, start, from, to, position), Failure::None);
        change(id, [&](ViewParam& param) { param = paramAt(position); });
        expectSpot(window, to);
        presenter_.remove(id);
    }
}

TEST_F(FisheyePictureTest, ABoxOutlinesWhatItsViewShows)
{
    constexpr int side = 500;
    const Window whole = show(1, CorrectType::Circle, PlaceType::Ceiling, {0.5, 0.5}, kWidestZoom, side, side);
    const Window strip = show(3, CorrectType::Unrolled, PlaceType::Ceiling, {0.5, 0.5}, kWidestZoom, 600, 300);
    const Window view = show(2, CorrectType::View, PlaceType::Ceiling, {0.62, 0.36}, 0.1F);
    views_->setDrawType(DrawType::Wide);
    put(coordinates([](int at) { return at * 255 / (kSide - 1); }));
    waitForPicture(3), waitForPicture(2), waitForPicture(1);
    const auto box = screen_.read(whole, 0, 0, side, side);
    const auto nearest = [&](Point at) {
        double least = 9;
        for (std::size_t i = 0; i < box.size(); ++i) {
            if (box[i].blue > 200)
                least = std::min(least, std::hypot((static_cast<double>(i % side) + 0.5) / side - at.x,
                                                   (static_cast<double>(i / side) + 0.5) / side - at.y));
        }
        return least;
    };
    Point middle{0, 0};
    std::vector<Point> corners;
    for (const auto& [x, y] : {std::pair(0, 0), {kWidth - 1, 0}, {kWidth - 1, kHeight - 1}, {0, kHeight - 1}}) {
        const Colour told = screen_.at(view, x, y);
        corners.push_back({told.red / 255.0, told.green / 255.0});
        middle = {middle.x + corners.back().x / 4, middle.y + corners.back().y / 4};
    }
    views_->setFinish(1);
    for (const Point& corner : corners) {
        EXPECT_LT(nearest(corner), 0.02);
        const auto beside = [&](double f) {
            return views_->boxAt({corner.x + f * (middle.x - corner.x), corner.y + f * (middle.y - corner.y)});
        };
        EXPECT_EQ(beside(0.1), 2);
        EXPECT_EQ(beside(-0.1), std::nullopt);
    }
    int blue = 0;
    for (const Colour& pixel : screen_.read(strip, 0, 0, 600, 300))
        blue += pixel.blue > 200 ? 1 : 0;
    EXPECT_GT(blue, 100);
    views_->setDrawType(DrawType::None);
    presenter_.refresh(views_->withBoxes());
    EXPECT_TRUE(eventually([&] { return presenter_.stats(1).redrawn > 0; }));
    EXPECT_EQ(screen_.at(whole, static_cast<int>(corners[0].x * side), static_cast<int>(corners[0].y * side)).blue, 0);
}

// A sample of each projection through the driver, compared with the arithmetic: red and green tell the place.
TEST_F(FisheyePictureTest, TheShadersAgreeWithTheArithmetic)
{
    put(coordinates(wave));
    int id = 0;
    const auto compare = [&](Window window, const Warp& warp, int what) {
        for (const Point at :
             {Point{0.2, 0.3}, Point{0.5, 0.6}, Point{0.85, 0.9}, Point{0.7, 0.15}, Point{0.01, 0.01}}) {
            const int x = static_cast<int>(at.x * kWidth);
            const int y = static_cast<int>(at.y * kHeight);
            const auto place = warp.pictureAt({(x + 0.5) / kWidth, (y + 0.5) / kHeight}, kSide, kSide);
            const Colour expected =
                place ? Colour{wave(place->x * kSide - 0.5), wave(place->y * kSide - 0.5), 0} : kBlack;
            EXPECT_TRUE(isNear(screen_.at(window, x, y), expected)) << what << " in " << id << " at " << x << ' ' << y;
        }
    };
    for (const PlaceType place : {PlaceType::Wall, PlaceType::Floor, PlaceType::Ceiling}) {
        for (const int correct : {0, 0x100, 0x200, 0x300, 0x400}) {
            const Window window = show(++id, static_cast<CorrectType>(correct), place, {0.8, 0.4});
            waitForPicture(id);
            change(id, [](ViewParam& param) { param.angle = 0.7F; });
            compare(window, views_->shown(id)->first, correct);
            presenter_.remove(id);
        }
    }
    for (const bool flat : {false, true}) {
        const auto eye = std::make_shared<EagleEye>(flat);
        eye->rotate(1.1, 0.3, 0.2);
        const Window window = screen_.window(kWidth, kHeight);
        ASSERT_TRUE(presenter_.add(++id, window, source_, eye));
        waitForPicture(id);
        compare(window, eye->look({kWidth, kHeight, {}}).warp, -1);
        presenter_.remove(id);
    }
}

} // namespace tide
