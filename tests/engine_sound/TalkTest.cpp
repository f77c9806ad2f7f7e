#include "tests/engine_sound/Pitch.h"
#include "tests/support/AlsaFiles.h"
#include "tests/support/HttpServer.h"

#include <QByteArray>
#include <QProcess>

#include <cmath>

namespace {

using namespace std::chrono_literals;
using engine_test::eventually;
using http_test::HttpServer;
using http_test::Login;
using http_test::Request;
using http_test::Response;

// What the ffmpeg tool makes of `input`.
std::string converted(const std::string& from, const std::string& input, const std::string& to)
{
    QProcess tool;
    tool.start("ffmpeg",
               QString::fromStdString("-nostdin -v error " + from + " -i pipe:0 " + to + " pipe:1").split(' '));
    tool.write(input.data(), static_cast<qint64>(input.size()));
    tool.closeWriteChannel();
    tool.waitForFinished();
    return tool.readAllStandardOutput().toStdString();
}

std::vector<std::int16_t> tone(int rate, double frequency, double seconds)
{
    std::vector<std::int16_t> samples(static_cast<std::size_t>(rate * seconds));
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] =
            static_cast<std::int16_t>(9000 * std::sin(6.283185307 * frequency * static_cast<double>(i) / rate));
    return samples;
}

std::string bytesOf(const std::vector<std::int16_t>& samples)
{
    return {reinterpret_cast<const char*>(samples.data()), samples.size() * 2};
}

// A device on loopback: keeps what is said to it, and says `speech` in pieces as long as one listens.
class Device
{
public:
    explicit Device(Login login = Login::Digest)
    {
        for (const char* path : {"/open", "/close", "/data"})
            server.protect(path, login, "admin", "secret");
        server.on("/open", Response{});
        server.on("/close", Response{});
        server.onBody("/data", [this](std::string_view piece) {
            const std::lock_guard lock(mutex_);
            heard_ += piece;
        });
    }

    // Over and over, as fast as it is spoken.
    void speak(const std::string& speech, int bytesPerSecond)
    {
        server.on("/data", [=](const Request&) {
            Response endless;
            endless.pause = 20ms;
            endless.next = [=, at = std::size_t(0), begin = std::chrono::steady_clock::now()]() mutable {
                const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - begin;
                std::string said;
                for (const auto end = static_cast<std::size_t>((passed.count() + 0.02) * bytesPerSecond); at < end;
                     ++at)
                    said += speech[at % speech.size()];
                return said;
            };
            return endless;
        });
    }

    int start(int audioType, const char* auth = "admin:secret", int sampleRate = -1)
    {
        return TP_StartVoiceTalk(server.url("/open").c_str(), server.url("/close").c_str(), server.url("/data").c_str(),
                                 auth, audioType, -1, sampleRate, -1, -1);
    }

    std::string heard() const
    {
        const std::lock_guard lock(mutex_);
        return heard_;
    }

    bool isToldToClose() const
    {
        for (int i = 0; i < 500 && server.requests("/close").size() < 2; ++i)
            std::this_thread::sleep_for(10ms);
        return !server.requests("/close").empty();
    }

    mutable std::mutex mutex_;
    std::string heard_; // mutex_
    HttpServer server;  // last: its threads use the others
};

class G711Talk : public ::testing::TestWithParam<std::string>
{
};

TEST_P(G711Talk, goesBothWays)
{
    const std::string law = GetParam();
    AlsaFiles files;
    std::vector<std::int16_t> said = tone(8000, 300, 5);
    for (std::size_t i = 0; i < said.size(); ++i) // no two places alike
        said[i] = static_cast<std::int16_t>(said[i] + static_cast<std::int16_t>(i * 7919 % 4001));
    files.speak(said);
    Device device;
    device.speak(converted("-f s16le -ar 8000 -ac 1", bytesOf(tone(8000, 1000, 1)), "-f " + law), 8000);
    const int talk = device.start(law == "alaw" ? TP_AUDIO_A_LAW : TP_AUDIO_MU_LAW);
    ASSERT_GT(talk, 0);
    std::this_thread::sleep_for(1500ms);
    EXPECT_EQ(TP_CloseSound(), 0); // of a window: none of the talk's business
    std::this_thread::sleep_for(500ms);
    EXPECT_EQ(TP_StopVoiceTalk(talk), 0);
    EXPECT_TRUE(device.isToldToClose());
    EXPECT_EQ(TP_StopVoiceTalk(talk), -1);

    const std::string coded = converted("-f s16le -ar 8000 -ac 1", bytesOf(said), "-f " + law);
    const std::string heard = device.heard();
    ASSERT_GT(heard.size(), 8000u);
    EXPECT_LT(heard.size(), 8000u * 3);
    EXPECT_NE(coded.find(heard), std::string::npos); // byte by byte
    EXPECT_NEAR(pitch(files.played(), 48000, 2), 1000, 20);
    EXPECT_GT(files.played().size(), 48000u * 2 * 3 / 2);
}

INSTANTIATE_TEST_SUITE_P(Laws, G711Talk, ::testing::Values("alaw", "mulaw"));

TEST(AacTalk, goesBothWays)
{
    AlsaFiles files;
    files.speak(tone(16000, 440, 5));
    Device device(Login::Basic);
    device.speak(converted("-f s16le -ar 16000 -ac 1", bytesOf(tone(16000, 1000, 3)), "-b:a 32k -f adts"), 4100);
    const int talk = device.start(TP_AUDIO_AAC, R"({"user":"admin","password":"secret"})");
    ASSERT_GT(talk, 0);
    std::this_thread::sleep_for(2s);
    EXPECT_EQ(TP_StopVoiceTalk(talk), 0);
    EXPECT_TRUE(device.isToldToClose());
    const std::string heard = converted("-f aac", device.heard(), "-f s16le");
    EXPECT_GT(heard.size(), 32000u);
    const auto* samples = reinterpret_cast<const std::int16_t*>(heard.data());
    EXPECT_NEAR(pitch({samples, samples + heard.size() / 2}, 16000, 1), 440, 15);
    EXPECT_NEAR(pitch(files.played(), 48000, 2), 1000, 30);
}

TEST(Talk, whatCannotBeIsRefusedInsideTheCall)
{
    AlsaFiles files;
    Device device;
    device.speak("x", 100);
    EXPECT_EQ(device.start(TP_AUDIO_A_LAW, "admin:wrong"), -1);
    EXPECT_EQ(TP_GetLastError(), static_cast<unsigned>(TP_ERROR_AUTHENTICATION));
    for (const int type : {-1, 3, 100})
        EXPECT_EQ(device.start(type), -1);
    EXPECT_EQ(device.start(TP_AUDIO_A_LAW, "admin:secret", 1000), -1);
    EXPECT_EQ(TP_GetLastError(), static_cast<unsigned>(TP_ERROR_BAD_ARGUMENT));
    EXPECT_EQ(TP_StartVoiceTalk(nullptr, nullptr, nullptr, nullptr, TP_AUDIO_A_LAW, 0, 0, 0, 0), -1);
    const char* const nobody = "http://127.0.0.1:1/";
    EXPECT_EQ(TP_StartVoiceTalk(nobody, "", nobody, "", TP_AUDIO_A_LAW, 0, 0, 0, 0), -1);
    EXPECT_EQ(TP_GetLastError(), static_cast<unsigned>(TP_ERROR_HTTP));
    EXPECT_TRUE(device.server.requests("/close").empty());

    device.server.on("/data", Response{503, "Busy."});
    EXPECT_EQ(device.start(TP_AUDIO_A_LAW), -1);
    char words[64] = {};
    EXPECT_EQ(TP_GetHTTPErrorInfo(words, sizeof(words)), 0);
    EXPECT_STREQ(words, "Busy.");
    EXPECT_TRUE(device.isToldToClose());
    for (const int unknown : {-1, 0, 99999})
        EXPECT_EQ(TP_StopVoiceTalk(unknown), -1);
}

} // namespace
