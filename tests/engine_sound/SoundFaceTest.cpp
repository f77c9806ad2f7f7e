#include "include/tide_pipe/tide_pipe.h"
#include "tests/support/AlsaFiles.h"

#include <gtest/gtest.h>

#include <QWidget>

#include <chrono>
#include <thread>

namespace {

using namespace std::chrono_literals;

// Rising crossings of the left channel in the second half.
int crossings(const std::vector<std::int16_t>& stereo, std::size_t& samples)
{
    int found = 0;
    const std::size_t from = stereo.size() / 4 * 2;
    samples = (stereo.size() - from) / 2;
    for (std::size_t i = from + 2; i < stereo.size(); i += 2)
        found += stereo[i - 2] < 0 && stereo[i] >= 0;
    return found;
}

TEST(SoundFace, aStreamIsHeardAndClosedSoundIsNot)
{
    AlsaFiles files;
    QWidget window;
    window.resize(64, 64);
    window.show();
    const int id = TP_Play("test:pattern?size=64x64&sound=1000&seconds=60", "", 0, window.winId(), "", "", 0, nullptr, nullptr, 0);
    ASSERT_GT(id, 0);
    EXPECT_EQ(TP_GetVolume(id), 65535);
    EXPECT_EQ(TP_SetVolume(id, 30000), 0);
    EXPECT_EQ(TP_GetVolume(id), 30000);
    EXPECT_EQ(TP_OpenSound(id), 0);
    std::this_thread::sleep_for(1500ms);
    EXPECT_EQ(TP_CloseSound(), 0);
    std::this_thread::sleep_for(200ms);
    const auto heard = files.played();
    std::this_thread::sleep_for(200ms);
    EXPECT_EQ(files.played().size(), heard.size());
    std::size_t samples = 0;
    const int waves = crossings(heard, samples);
    EXPECT_NEAR(waves, static_cast<double>(samples) / 48.0, static_cast<double>(samples) / 48.0 / 10);
    EXPECT_EQ(TP_Stop(id), 0);

    for (const int unknown : {id, -1, 0}) {
        EXPECT_EQ(TP_OpenSound(unknown), -1);
        EXPECT_EQ(TP_GetLastError(), static_cast<unsigned>(TP_ERROR_NO_SUCH_ID));
        EXPECT_EQ(TP_SetVolume(unknown, 1), -1);
        EXPECT_EQ(TP_GetVolume(unknown), -1);
    }
    EXPECT_EQ(TP_CloseSound(), 0);
}

} // namespace
