#include "engine/present/fisheye/EagleEye.h"
#include "engine/present/fisheye/FisheyeViews.h"

#include <gtest/gtest.h>

namespace tide {

namespace {

constexpr WindowShape kWindow{704, 576, {}};
constexpr PlaceType kPlaces[] = {PlaceType::Wall, PlaceType::Floor, PlaceType::Ceiling};
constexpr double kPixel = 1.0 / 704;

ViewParam at(double x, double y, float z = kWidestZoom)
{
    return {static_cast<float>(x), static_cast<float>(y), z};
}

ViewGeometry viewAt(PlaceType place, Point position, float z = kWidestZoom)
{
    return ViewGeometry(place, CorrectType::View, at(position.x, position.y, z), kWindow);
}

double distance(Point a, Point b)
{
    return std::hypot(a.x - b.x, a.y - b.y);
}

template <typename Check> void forPoints(double from, double to, Check check)
{
    for (double y = from; y <= to; y += (to - from) / 6) {
        for (double x = from; x <= to; x += (to - from) / 6)
            check(Point{x, y});
    }
}

Aim aimAt(PlaceType place, Point position)
{
    return Mounting(place).aimOf(LensModel().sceneAt(position));
}

} // namespace

TEST(FisheyeGeometry, APointOfTheWindowIsFoundAgainByItsSceneInEveryMountingAndProjection)
{
    const WindowShape part{600, 800, {0.2, 0.1, 0.7, 0.8}};
    for (const PlaceType place : kPlaces) {
        for (const int correct : {0, 0x100, 0x200, 0x300, 0x400}) {
            ViewParam param = at(0.35, 0.6, 0.1F);
            param.angle = 1.2F;
            for (const WindowShape& shape : {kWindow, part}) {
                const ViewGeometry view(place, static_cast<CorrectType>(correct), param, shape);
                int seen = 0;
                forPoints(0.02, 0.98, [&](Point p) {
                    const auto scene = view.sceneAt(p);
                    seen += scene ? 1 : 0;
                    if (scene) {
                        const Point again = view.pointOf(*scene).value_or(Point{9, 9});
                        EXPECT_LT(distance(again, p), 1e-6) << correct << " at " << p.x << ' ' << p.y;
                    }
                });
                EXPECT_GT(seen, 20);
            }
        }
    }
}

TEST(FisheyeGeometry, StraightLinesAreStraightInAView)
{
    const ViewGeometry view = viewAt(PlaceType::Ceiling, {0.7, 0.4});
    forPoints(0.1, 0.9, [&](Point p) {
        const Ray middle = *view.sceneAt({0.5 * (p.x + 0.3), 0.5 * (p.y + 0.6)});
        EXPECT_NEAR(dot(cross(*view.sceneAt(p), *view.sceneAt({0.3, 0.6})), middle), 0, 1e-9);
    });
}

TEST(FisheyeGeometry, WhatStandsUprightStandsUprightInAView)
{
    for (const PlaceType place : kPlaces) {
        forPoints(0.22, 0.76, [&](Point position) { // not the very middle, which has no pan
            const ViewGeometry view = viewAt(place, position);
            const Aim aim = aimAt(place, position);
            EXPECT_LT(distance(*view.pointOf(LensModel().sceneAt(position)), {0.5, 0.5}), 1e-6);
            const auto above = view.pointOf(Mounting(place).rayOf({aim.pan, aim.tilt + 0.1}));
            EXPECT_NEAR(above->x, 0.5, 1e-6);
            EXPECT_LT(above->y, 0.5);
            EXPECT_GT(view.pointOf(Mounting(place).rayOf({aim.pan + 0.01, aim.tilt}))->x, 0.5);
        });
    }
}

TEST(FisheyeGeometry, AGrabKeepsTheSceneUnderThePointer)
{
    for (const PlaceType place : kPlaces) {
        int kept = 0;
        int stopped = 0;
        forPoints(0.25, 0.75, [&](Point position) {
            forPoints(0.1, 0.9, [&](Point to) {
                for (const Point from : {Point{0.5, 0.5}, Point{0.2, 0.7}}) {
                    const ViewGeometry before = viewAt(place, position, 0.1F);
                    const Point after = before.grabbed(from, to);
                    const auto now = viewAt(place, after, 0.1F).pointOf(*before.sceneAt(from));
                    const bool exact = now && distance(*now, to) < 2 * kPixel;
                    // Where it is not, the view has come to the zenith, the nadir or the rim, or the scene stands too
                    // steep to come so far aside.
                    const double away = 2 * distance(after, {0.5, 0.5});
                    const bool atEnd = away > 0.999 || away < 0.01;
                    const double aside = dot(*before.sceneAt(to), unit(before.warp().right));
                    const double height = dot(*before.sceneAt(from), Mounting(place).up());
                    EXPECT_TRUE(exact || atEnd || height * height + aside * aside > 1.0)
                        << static_cast<int>(place) << ' ' << position.x << ' ' << position.y;
                    kept += exact ? 1 : 0;
                    stopped += exact ? 0 : 1;
                }
            });
        });
        EXPECT_GT(kept, 8 * stopped);
    }
}

TEST(FisheyeGeometry, ATinyMoveFromTheMiddleStepsTheViewThatWay)
{
    for (const PlaceType place : kPlaces) {
        const auto views = std::make_shared<FisheyeViews>();
        views->add(1, place, CorrectType::View, at(0.4, 0.3));
        const Aim start = aimAt(place, {0.4, 0.3});
        const auto stepped = [&](double x, double y) {
            Point position;
            EXPECT_EQ(views->drag(1, 1, {0.4, 0.3}, {0.5, 0.5}, {x, y}, position), Failure::None);
            const Aim aim = aimAt(place, position);
            return Aim{aim.pan - start.pan, aim.tilt - start.tilt};
        };
        for (const double step : {-0.0028, 0.0028}) {
            EXPECT_GT(stepped(0.5 + step, 0.5).pan * step, 1e-7);
            EXPECT_LT(stepped(0.5, 0.5 + step).tilt * step, -1e-7);
        }
        EXPECT_EQ(stepped(0.5, 0.5).pan, 0.0);
        EXPECT_GT(stepped(0.5 - 0.05, 0.5).pan, 1e-3) << "a grab goes the other way";
    }
}

TEST(FisheyeGeometry, ABoxGoesWithThePointer)
{
    for (const int correct : {0, 0x200, 0x300}) {
        const ViewGeometry whole(PlaceType::Ceiling, static_cast<CorrectType>(correct), {}, kWindow);
        const Point start{0.4, 0.3};
        const Point box = *whole.pointOf(LensModel().sceneAt(start));
        const Point moved = whole.movedBox(start, {0.3, 0.3}, {0.35, 0.36}).value();
        const Point now = *whole.pointOf(LensModel().sceneAt(moved));
        EXPECT_LT(distance(now, {box.x + 0.05, box.y + 0.06}), 1e-6);
        const Point far = whole.movedBox(start, {0, 0}, {1e30, -1e30}).value();
        EXPECT_LE(distance(far, {0.5, 0.5}), 0.5 + 1e-9);
    }
}

TEST(FisheyeGeometry, AScanGoesOnForEverFromOneStart)
{
    constexpr double step = 0.01;
    for (const PlaceType place : kPlaces) {
        const auto views = std::make_shared<FisheyeViews>();
        views->add(1, place, CorrectType::View, at(0.6, 0.3));
        Aim last = aimAt(place, {0.6, 0.3});
        const double tilt = last.tilt;
        double least = 9.0, most = -9.0;
        for (int tick = 0; tick < 600; ++tick) {
            Point position;
            ASSERT_EQ(views->scan(1, place, {0.6F, 0.3F}, step, position), Failure::None);
            views->update(1, [&](const ViewParam&) { return at(position.x, position.y); });
            const Aim aim = aimAt(place, position);
            EXPECT_NEAR(std::abs(std::remainder(aim.pan - last.pan, 2 * kPi)), step * kPi, 1e-5);
            EXPECT_NEAR(aim.tilt, tilt, 1e-4);
            last = aim;
            least = std::min(least, aim.pan);
            most = std::max(most, aim.pan);
        }
        EXPECT_LT(least, -0.9);
        EXPECT_GT(most, 0.9);
        EXPECT_EQ(most > 3.0, place != PlaceType::Wall); // round, or to and fro
    }
}

TEST(EagleEyeTest, AddsStepsAndReplacesTheTravelOfADrag)
{
    EagleEye eye(false);
    const auto yaw = [&] {
        const Ray front = eye.look({}).warp.front;
        return std::atan2(front.x, front.z);
    };
    const double step = 0.0026 * kPi * 3;
    const double rows[][3] = {{step, 0, -step}, {step, 0, 0}, {0.2, 0, 0.2}, {0.5, 0, 0.5},
                              {0.4, 0.05, 0.4}, {0, 0, 0.4},  {0.1, 0, 0.5}, {-0.3, 0, 0.2}};
    for (const auto& [aside, zoom, after] : rows) {
        EXPECT_EQ(eye.rotate(static_cast<float>(aside), 0, zoom), Failure::None);
        EXPECT_NEAR(yaw(), 2 * step + after, 1e-5) << aside;
    }
    const Ray right = eye.look({}).warp.right;
    EXPECT_NEAR(std::sqrt(dot(right, right)), std::exp(-0.05), 1e-9);
    for (const double wild : {std::nan(""), HUGE_VAL, 1e30}) {
        EXPECT_EQ(eye.rotate(wild, 0, 0), Failure::BadArgument);
        EXPECT_EQ(eye.rotate(0, wild, 0), Failure::BadArgument);
    }
    EXPECT_EQ(eye.rotate(0, 0, std::nan("")), Failure::BadArgument);
    EXPECT_EQ(eye.rotate(0, 0, 1e30), Failure::None);
    EXPECT_GT(dot(eye.look({}).warp.right, eye.look({}).warp.right), 0.001);
}

} // namespace tide
