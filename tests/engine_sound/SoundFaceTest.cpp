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
template <class Samples> std::string converted(const std::string& from, const Samples& input, const std::string& to)
{
    QProcess tool;
    tool.start("ffmpeg",
               QString::fromStdString("-nostdin -v error " + from + " -i pipe:0 " + to + " pipe:1").split(' '));
    tool.write(reinterpret_cast<const char*>(input.data()), static_cast<qint64>(input.size() * sizeof(input[0])));
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

    // As fast as it is spoken.
    void speak(const std::string& speech, int bytesPerSecond)
    {
        Response response{200, speech};
        response.pause = 20ms;
        response.pieceSize = static_cast<std::size_t>(bytesPerSecond / 50);
        server.on("/data", response);
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
        return eventually([this] { return server.requests("/close").size() >= 2; }, 5s); // the first is for the log-in
    }

    mutable std::mutex mutex_;
    std::string heard_; // mutex_
    HttpServer server;  // last: its threads use the others
};

struct Codec
{
    TP_AudioType type;
    const char *device, *tool; // how the device speaks, and how the tool reads what we say
    int rate, bytesPerSecond;
    const char* auth;
};

class AnyCodec : public ::testing::TestWithParam<Codec>
{
};

TEST_P(AnyCodec, goesBothWays)
{
    const Codec& codec = GetParam();
    const std::string raw = "-f s16le -ac 1 -ar " + std::to_string(codec.rate);
    AlsaFiles files;
    std::vector<std::int16_t> said = tone(codec.rate, 440, 5);
    for (std::size_t i = 0; i < said.size(); ++i) // no two places alike
        said[i] = static_cast<std::int16_t>(said[i] + static_cast<std::int16_t>(i * 7919 % 401));
    files.speak(said);
    Device device(codec.type == TP_AUDIO_AAC ? Login::Basic : Login::Digest);
    device.speak(converted(raw, tone(codec.rate, 1000, 5), codec.device), codec.bytesPerSecond);
    const int talk = device.start(codec.type, codec.auth);
    ASSERT_GT(talk, 0);
    std::this_thread::sleep_for(1500ms);
    EXPECT_EQ(TP_CloseSound(), 0); // of a window: none of the talk's business
    std::this_thread::sleep_for(500ms);
    EXPECT_EQ(TP_StopVoiceTalk(talk), 0);
    EXPECT_TRUE(device.isToldToClose());
    EXPECT_EQ(TP_StopVoiceTalk(talk), -1);
    EXPECT_NEAR(pitch(files.played(), 48000, 2), 1000, 30);
    EXPECT_GT(files.played().size(), 48000u * 2);

    const std::string heard = converted(codec.tool, device.heard(), "-f s16le");
    EXPECT_NEAR(static_cast<double>(heard.size()) / codec.rate / 2, 2, 1);
    const auto* samples = reinterpret_cast<const std::int16_t*>(heard.data());
    EXPECT_NEAR(pitch({samples, samples + heard.size() / 2}, codec.rate, 1), 440, 15);
    const std::string coded = converted(raw, said, codec.device);
    EXPECT_TRUE(codec.type == TP_AUDIO_AAC || coded.find(device.heard()) != std::string::npos); // byte by byte
}

INSTANTIATE_TEST_SUITE_P(
    Codecs, AnyCodec,
    ::testing::Values(Codec{TP_AUDIO_A_LAW, "-f alaw", "-f alaw -ar 8000 -ac 1", 8000, 8000, "admin:secret"},
                      Codec{TP_AUDIO_MU_LAW, "-f mulaw", "-f mulaw -ar 8000 -ac 1", 8000, 8000, "admin:secret"},
                      Codec{TP_AUDIO_AAC, "-b:a 32k -f adts", "-f aac", 16000, 4100,
                            R"({"user":"admin","password":"secret"})"}));

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

using SoundFace = engine_test::WindowTest;

TEST_F(SoundFace, aStreamIsHeardAndClosedSoundIsNot)
{
    AlsaFiles files;
    const int id = play("test:pattern?size=64x64&sound=1000&seconds=60");
    ASSERT_GT(id, 0);
    EXPECT_EQ(TP_SetVolume(id, 30000), 0);
    EXPECT_EQ(TP_GetVolume(id), 30000);
    EXPECT_EQ(TP_OpenSound(id), 0);
    std::this_thread::sleep_for(1500ms);
    EXPECT_EQ(TP_CloseSound(), 0);
    std::this_thread::sleep_for(200ms);
    const auto heard = files.played();
    std::this_thread::sleep_for(200ms);
    EXPECT_EQ(files.played().size(), heard.size());
    EXPECT_NEAR(pitch(heard, 48000, 2), 1000, 20);
    EXPECT_EQ(TP_Stop(id), 0);
}

} // namespace
