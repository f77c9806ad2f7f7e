#include "tests/engine_transfer/TransferTest.h"

#include <array>
#include <atomic>
#include <cstring>
#include <mutex>
#include <vector>

namespace transfer_test {

using Heard = std::array<float, 4>; // box, kind and place

// What the one function has heard, and what it does while it hears.
struct Ear
{
    std::mutex mutex;
    std::vector<Heard> heard;
    std::atomic<int> running{0}, delayMs{0}, stops{-1}; // the last: the listener that the function stops

    bool waitFor(std::size_t count)
    {
        return eventually([&] {
            const std::lock_guard lock(mutex);
            return heard.size() >= count;
        });
    }
};
Ear* ear = nullptr;

void hear(int, int kind, void* data, unsigned length)
{
    ++ear->running;
    const auto& message = *static_cast<const _TP_FISHMESSAGE*>(data);
    EXPECT_EQ(length, sizeof message);
    EXPECT_EQ(message.kind, kind);
    _TP_PTZPARAM at{};
    if (kind == TP_FISH_BOX && message.length == sizeof at)
        std::memcpy(&at, message.payload, sizeof at);
    else if (message.length == 1)
        at.x = *static_cast<const unsigned char*>(message.payload);
    std::this_thread::sleep_for(std::chrono::milliseconds(ear->delayMs));
    const int id = ear->stops;
    EXPECT_EQ(id > 0 ? TP_StopFishListener(id) : 0, 0);
    const std::lock_guard lock(ear->mutex);
    ear->heard.push_back({static_cast<float>(message.box), static_cast<float>(message.kind), at.x, at.y});
    --ear->running;
}

// Says each text once, in pieces of seven bytes, and then `idle` for ever.
Response saying(const std::string& text, const std::string& idle = "\r\n")
{
    Response response;
    response.next = [=, at = std::size_t(0)]() mutable {
        if (at >= text.size())
            std::this_thread::sleep_for(100ms);
        const std::string piece = at < text.size() ? text.substr(at, 7) : idle;
        at += 7;
        return piece;
    };
    return response;
}

class FishListenerTest : public TransferTest
{
protected:
    FishListenerTest()
    {
        ear = &ear_;
        EXPECT_EQ(TP_SetFishMsgCallBack(&hear), 0);
    }
    ~FishListenerTest() override { EXPECT_EQ(TP_SetFishMsgCallBack(nullptr), 0); }

    Ear ear_;
};

TEST_F(FishListenerTest, SoundLinesAreReportedAndAllOthersPassedOver)
{
    // clang-format off
    const std::string hostile[] = {
        "", "{}", "null", "[1]", std::string(20, '{'),
        R"({"box": "3", "x": 0.4, "y": 0.5})", R"({"box": 3, "x": nan, "y": 0.5})", R"({"box": 3, "x": -nan, "y": 0})",
        R"({"box": 3, "x": 1e999, "y": 0.5})", R"({"box": 3.5, "x": 0.4, "y": 0.5})",
        R"({"box": 99999999999, "x": 0.4, "y": 0.5})", R"({"box": 3, "x": 1.1, "y": 0.5})", R"({"box": 3, "x": 0.4})",
        R"({"mode": 256})", R"({"mode": -1})", R"({"mode": true})", R"({"mode": 1)", R"({"mode": 1}})", R"({"mo\)",
        R"({"mode": 1, "x": ")" + std::string(3 << 20, 'x') + R"("})"};
    // clang-format on
    std::string text = R"({"box": 3, "x": 0.25, "y": 0.5, "name": "a \" b", "on": null})"
                       "\r\n";
    for (const std::string& line : hostile)
        text += line + "\n";
    text += "{\"y\":1,\"x\":0,\"box\":9,\"mode\":2}\n";
    server_.on("/boxes", [&](const Request&) { return saying(text); });
    server_.protect("/boxes", Login::Digest, "user", "secret");
    const int id = TP_StartFishListener(server_.url("/boxes").c_str(), "user:secret", R"({"want": "boxes"})");
    ASSERT_GT(id, 0);
    ASSERT_TRUE(ear_.waitFor(3));
    std::this_thread::sleep_for(1500ms); // blank lines are enough to keep the line
    EXPECT_EQ(TP_StopFishListener(id), 0);
    EXPECT_EQ(ear_.heard, (std::vector<Heard>{{3, 2, 0.25F, 0.5F}, {0, 3, 2, 0}, {9, 2, 0, 1}}));
    const Request request = server_.requests("/boxes").back();
    EXPECT_EQ(request.method + request.body, R"(POST{"want": "boxes"})");
    EXPECT_EQ(request.headers.at("content-type"), "application/json");
    EXPECT_EQ(server_.requests("/boxes").size(), 2U); // one of them for the log-in
}

TEST_F(FishListenerTest, BrokenAndSilentLinesAreOpenedAgainRefusedOnesAreNot)
{
    std::atomic<int> asked{0};
    server_.on("/boxes", [&](const Request&) {
        Response response = saying("{\"mode\": 1}\n", std::string(1, '\n'));
        if (++asked <= 2)
            response.next = [said = false, ends = asked == 1]() mutable { // at once, or after it fell silent
                std::this_thread::sleep_for(said && !ends ? 2500ms : 0ms);
                return std::exchange(said, true) ? "" : "{\"mode\": 1}\n";
            };
        return response;
    });
    server_.protect("/locked", Login::Basic, "user", "secret");
    const int locked = TP_StartFishListener(server_.url("/locked").c_str(), "user:wrong", "");
    const int id = TP_StartFishListener(server_.url("/boxes").c_str(), "", nullptr);
    EXPECT_NE(id, locked);
    EXPECT_TRUE(ear_.waitFor(3));
    EXPECT_EQ(server_.requests("/boxes").back().method, "GET");
    EXPECT_EQ(server_.requests("/locked").size(), 2U); // without and with the login, and not again
    EXPECT_EQ(TP_StopFishListener(id) + TP_StopFishListener(locked), 0);
    EXPECT_EQ(TP_StopFishListener(id), -1);
    for (const char* bad : {"", "rtsp://127.0.0.1/x", "http://a b/\r\n"})
        EXPECT_EQ(TP_StartFishListener(bad, "", ""), -1) << bad;
    EXPECT_EQ(TP_StartFishListener(server_.url("/boxes").c_str(), "a\r\nb", ""), -1);
}

TEST_F(FishListenerTest, NothingRunsAfterAStopOrAnotherFunction)
{
    const std::string line = "{\"mode\":1}\n";
    server_.on("/boxes", [&](const Request&) { return saying("", line + line); });
    const std::string url = server_.url("/boxes");
    ear_.delayMs = 30;
    for (int round = 0; round < 4; ++round) {
        const int id = TP_StartFishListener(url.c_str(), "", "");
        EXPECT_TRUE(ear_.waitFor(1));
        if (round % 2 == 0)
            EXPECT_EQ(TP_StopFishListener(id), 0);
        else
            EXPECT_EQ(TP_SetFishMsgCallBack(nullptr), 0);
        EXPECT_EQ(ear_.running, 0);
        TP_StopFishListener(id);
        ear_.heard.clear();
        TP_SetFishMsgCallBack(&hear);
    }
    TP_SetFishMsgCallBack(nullptr);
    ear_.stops = TP_StartFishListener(url.c_str(), "", "");
    TP_SetFishMsgCallBack(&hear);
    EXPECT_TRUE(ear_.waitFor(1));
    std::this_thread::sleep_for(300ms);
    EXPECT_EQ(ear_.heard.size(), 1U);
}

} // namespace transfer_test
