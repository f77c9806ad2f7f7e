#include "tests/engine_stream/StreamTestKit.h"

#include <atomic>

namespace tide {
namespace {

using namespace std::chrono_literals;

TEST(NetworkTest, LiveCameraPlaysOverTcpAndUdp)
{
    const Camera camera;
    for (const int protocol : {0, 1}) {
        Viewer viewer(optionsFor(camera.url(), "", protocol));
        ASSERT_TRUE(viewer.waitFor(TP_MESSAGE_OPENED)) << protocol;
        EXPECT_TRUE(viewer.stream().isLive());
        EXPECT_NEAR(static_cast<double>(viewer.takeFor(2000).size()), 50, 15) << protocol;
        EXPECT_TRUE(viewer.stream().pictureTime());
    }
}

TEST(NetworkTest, RecordedSourceIsPacedAndPaused)
{
    const Camera camera({QString::fromStdString("file=" + h264Clip())});
    Viewer viewer(camera.url("/file"));
    ASSERT_TRUE(viewer.waitFor(TP_MESSAGE_OPENED));
    EXPECT_FALSE(viewer.stream().isLive());
    viewer.stream().pause();
    EXPECT_TRUE(viewer.takeFor(1000).empty());
    viewer.stream().resume();
    EXPECT_GT(viewer.takeAll().size(), 50U);
}

TEST(NetworkTest, CameraDiesAndComesBack)
{
    Camera camera;
    Viewer viewer(camera.url());
    ASSERT_TRUE(viewer.waitFor(TP_MESSAGE_OPENED));
    camera.die();
    EXPECT_TRUE(viewer.waitFor(TP_MESSAGE_LOST));
    EXPECT_NE(viewer.stream().current(), nullptr); // the last picture stays
    viewer.takeFor(1200);
    EXPECT_TRUE(viewer.messages().empty()); // told once, however often it is tried
    const Camera again({}, camera.port());
    EXPECT_TRUE(viewer.waitFor(TP_MESSAGE_RESTORED));
    EXPECT_GT(viewer.takeFor(1000).size(), 15U);
}

TEST(NetworkTest, FrozenCameraIsReportedThenLostAndTriedAgain)
{
    Camera camera;
    Viewer viewer(camera.url());
    ASSERT_TRUE(viewer.waitFor(TP_MESSAGE_OPENED));
    for (const auto& [gone, back] :
         {std::pair(TP_MESSAGE_STANDING_STILL, TP_MESSAGE_MOVING_AGAIN), {TP_MESSAGE_LOST, TP_MESSAGE_RESTORED}}) {
        camera.freeze(true);
        EXPECT_TRUE(viewer.waitFor(gone, 15000));
        camera.freeze(false);
        EXPECT_TRUE(viewer.waitFor(back, 15000));
        EXPECT_GT(viewer.takeFor(1000).size(), 15U); // and the delay is small
    }
}

TEST(NetworkTest, RefusedCredentialWaitsForAnother)
{
    const Camera camera({"auth=us er:p@ss:w"});
    Viewer viewer(optionsFor(camera.url(), "us er:wrong"));
    ASSERT_TRUE(viewer.waitFor(TP_MESSAGE_AUTH_FAILED));
    viewer.takeFor(1500);
    EXPECT_TRUE(viewer.messages().empty());
    EXPECT_EQ(viewer.stream().setReconnectAuth("bad\r\nline"), Failure::BadArgument);
    EXPECT_EQ(viewer.stream().setReconnectAuth(R"({"user":"us er","password":"p@ss:w"})"), Failure::None);
    EXPECT_TRUE(viewer.waitFor(TP_MESSAGE_OPENED));
    Viewer inUrl(camera.url("/live", "us%20er:p%40ss%3Aw@"));
    EXPECT_TRUE(inUrl.waitFor(TP_MESSAGE_OPENED));
}

TEST(HttpTest, FileWithRangesStartsInTheMiddleAndRunsBackward)
{
    const std::string film = clipBytes("film.mp4", "-i " + h264Clip() + " -c copy");
    http_test::HttpServer server;
    server.on("/film.mp4", [&](const auto& request) { return rangeOf(request, film); });
    server.protect("/film.mp4", http_test::Login::Digest, "us er", "p@ss");
    StreamOptions options = optionsFor(server.url("/film.mp4"), "us er:p@ss");
    options.startTime = "2";
    Viewer forward(options);
    const auto pictures = forward.takeAll();
    EXPECT_FALSE(forward.stream().isLive());
    EXPECT_EQ(pictures.front()->position, 2s);
    options.direction = Direction::Backward;
    Viewer backward(options);
    EXPECT_EQ(backward.takeAll().back()->position, 2s);
    Viewer refused(optionsFor(server.url("/film.mp4"), "us er:wrong"));
    EXPECT_TRUE(refused.waitFor(TP_MESSAGE_AUTH_FAILED));
}

TEST(HttpTest, FileWithoutRangesIsPacedAndGoesOnWhereTheLineWasCut)
{
    const std::string film = clipBytes("film.ts", "-i " + h264Clip() + " -c copy");
    http_test::HttpServer server;
    std::atomic<int> asked{0};
    server.on("/film.ts", [&](const auto&) {
        http_test::Response response{200, film};
        if (asked++ == 0)
            response.cutAfter = film.size() / 2;
        return response;
    });
    Viewer viewer(optionsFor(server.url("/film.ts"), "Authorization: Bearer abc"));
    const TimePoint start = Clock::now();
    const auto pictures = viewer.takeAll();
    EXPECT_GT(Clock::now() - start, 2500ms); // not as fast as it comes
    EXPECT_GE(asked, 2);
    EXPECT_GT(pictures.size(), 60U);
    for (std::size_t i = 1; i < pictures.size(); ++i)
        EXPECT_GT(pictures[i]->position, pictures[i - 1]->position);
    EXPECT_EQ(server.requests("/film.ts").front().headers.at("authorization"), "Bearer abc");
}

// Holds the stream's thread up: once, or for each picture that was shown, as a decoder does that is too slow.
struct Brake : PacketSink
{
    void tracks(const std::vector<TrackInfo>&) override {}
    void packet(const AVPacket&) override
    {
        const bool isNew = std::exchange(seen, shown.load()) != shown;
        std::this_thread::sleep_for(std::chrono::milliseconds(once.exchange(0) + (isNew ? each.load() : 0)));
    }
    std::atomic<int> once{0}, each{0};
    std::atomic<std::size_t> shown{0};
    std::size_t seen = 0; // stream's thread
};

TEST(HttpTest, DelayOfALiveSourceIsBounded)
{
    const std::string film =
        clipBytes("long.ts", "-f lavfi -i testsrc2=size=160x120:rate=25:duration=40 -c:v libx264 -preset ultrafast "
                             "-g 25 -pix_fmt yuv420p -b:v 400k -minrate 400k -maxrate 400k -bufsize 80k");
    http_test::HttpServer server;
    std::atomic<double> speed{1.0};
    server.on("/live.ts", [&](const auto&) {
        http_test::Response response; // the film in small pieces, `speed` times as fast as it is shown
        response.next = [&, sent = std::size_t(0), seconds = 0.0, last = Clock::now()]() mutable {
            std::this_thread::sleep_for(10ms);
            const TimePoint now = Clock::now();
            seconds += speed * std::chrono::duration<double>(now - std::exchange(last, now)).count();
            const auto end = static_cast<std::size_t>(seconds / 40 * static_cast<double>(film.size())) + 188;
            const std::size_t from = std::exchange(sent, std::min(film.size(), end));
            return film.substr(from, sent - from);
        };
        return response;
    });
    Viewer viewer(server.url("/live.ts"));
    ASSERT_TRUE(viewer.waitFor(TP_MESSAGE_OPENED));
    ASSERT_TRUE(viewer.stream().isLive());
    const auto brake = std::make_shared<Brake>();
    viewer.stream().addSink(brake);
    const auto worstDelay = [&](int milliseconds) {
        Microseconds worst{};
        for (const TimePoint end = Clock::now() + std::chrono::milliseconds(milliseconds); Clock::now() < end;) {
            brake->shown += viewer.takeFor(20).size();
            worst = std::max(worst, viewer.stream().delay());
        }
        return worst;
    };
    speed = 2.0;
    EXPECT_LT(worstDelay(4000), 1s) << "fast";
    speed = 1.0;
    EXPECT_LT(worstDelay(1000), 1s) << "in time";
    brake->once = 2000;
    worstDelay(4500);
    EXPECT_LT(worstDelay(1000), 1s) << "after a hold-up";
    const auto told = viewer.messages(); // of the two seconds, and of their end
    EXPECT_TRUE(std::any_of(told.begin(), told.end(), [](int code) { return code >= TP_MESSAGE_DELAY + 15; }));
    EXPECT_LT(told.empty() ? TP_MESSAGE_DELAY_MOST : told.back(), TP_MESSAGE_DELAY + 5);
    brake->each = 100;
    EXPECT_LT(worstDelay(8000), 2500ms) << "too slow a machine";
    brake->each = 0;
    worstDelay(3000);
    EXPECT_LT(worstDelay(1000), 1s) << "and one that is quick again";
    EXPECT_GT(viewer.takeFor(1000).size(), 15U);
}

} // namespace
} // namespace tide
