#include "tests/engine_sound/Pitch.h"
#include "tests/support/AlsaFiles.h"

namespace {

using namespace std::chrono_literals;

using SoundFace = engine_test::WindowTest;

TEST_F(SoundFace, aStreamIsHeardAndClosedSoundIsNot)
{
    AlsaFiles files;
    const int id = play("test:pattern?size=64x64&sound=1000&seconds=60");
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
    EXPECT_NEAR(pitch(heard, 48000, 2), 1000, 20);
    EXPECT_EQ(TP_Stop(id), 0);
    EXPECT_EQ(TP_OpenSound(id), -1);
    EXPECT_EQ(TP_GetLastError(), static_cast<unsigned>(TP_ERROR_NO_SUCH_ID));
    EXPECT_EQ(TP_CloseSound(), 0);
}

} // namespace
