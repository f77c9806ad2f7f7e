#include "tests/engine_stream/StreamTestKit.h"
#include "tests/support/HttpServer.h"

#include <atomic>
#include <fstream>
#include <gtest/gtest.h>

namespace tide {
namespace {

using namespace std::chrono_literals;

StreamOptions optionsFor(const std::string& url, const std::string& auth, int protocol = 0)
{
    StreamOptions options;
    options.url = url;
    options.auth = auth;
    options.protocol = protocol;
    return options;
}

class Transports : public ::testing::TestWithParam<int>
{
};

TEST_P(Transports, LiveCameraPlays)
{
    const Camera camera;
    Viewer viewer(optionsFor(camera.url(), "", GetParam()));
    ASSERT_TRUE(viewer.waitFor(TP_MESSAGE_OPENED));
    EXPECT_TRUE(viewer.stream().isLive());
    EXPECT_NEAR(static_cast<double>(viewer.takeFor(2000).size()), 50, 15);
    EXPECT_TRUE(viewer.stream().pictureTime());
}

INSTANTIATE_TEST_SUITE_P(TcpAndUdp, Transports, ::testing::Values(0, 1));

TEST(NetworkTest, RecordedSourceIsPacedAndPaused)
{
    const Camera camera({"file=" + h264Clip()});
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

TEST(NetworkTest, FrozenCameraIsReportedAndDelayIsSmallAfterwards)
{
    const Camera camera;
    Viewer viewer(camera.url());
    ASSERT_TRUE(viewer.waitFor(TP_MESSAGE_OPENED));
    camera.freeze(true);
    EXPECT_TRUE(viewer.waitFor(TP_MESSAGE_STANDING_STILL));
    camera.freeze(false);
    EXPECT_TRUE(viewer.waitFor(TP_MESSAGE_MOVING_AGAIN));
    EXPECT_GT(viewer.takeFor(1000).size(), 15U);
}

TEST(NetworkTest, SilentCameraIsLostAndTriedAgain)
{
    Camera camera;
    Viewer viewer(camera.url());
    ASSERT_TRUE(viewer.waitFor(TP_MESSAGE_OPENED));
    camera.freeze(true);
    EXPECT_TRUE(viewer.waitFor(TP_MESSAGE_LOST, 15000));
    camera.freeze(false);
    EXPECT_TRUE(viewer.waitFor(TP_MESSAGE_RESTORED, 15000));
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

std::string bytesOf(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(HttpTest, FileWithRangesStartsInTheMiddleAndRunsBackward)
{
    const std::string film = bytesOf(h264Clip());
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
    const std::string film = bytesOf(clip("film.ts", "-i " + h264Clip() + " -c copy"));
    http_test::HttpServer server;
    std::atomic<int> asked{0};
    server.on("/film.ts", [&](const auto&) {
        http_test::Response response;
        response.body = film;
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

} // namespace
} // namespace tide
