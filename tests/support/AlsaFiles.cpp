#include "tests/support/AlsaFiles.h"

AlsaFiles::AlsaFiles()
{
    speak({});
    putBack();
    setenv("ALSA_CONFIG_PATH", (folder_ / "asound.conf").c_str(), 1);
}

AlsaFiles::~AlsaFiles()
{
    unsetenv("ALSA_CONFIG_PATH");
}

// Replaced whole: ALSA looks at it whenever a device is opened.
void AlsaFiles::writeConfig(const std::string& speaker)
{
    const std::string config = "pcm.null { type null }\n"
                               "pcm.out { type file slave.pcm null file \"" +
                               speaker +
                               "\" format raw }\n"
                               "pcm.in { type file slave.pcm null file /dev/null infile \"" +
                               folder_ / "microphone" +
                               "\" format raw }\n"
                               "pcm.!default { type asym playback.pcm out capture.pcm in }\n";
    std::filesystem::rename(folder_.write("asound.new", config), folder_ / "asound.conf");
}

void AlsaFiles::speak(const std::vector<std::int16_t>& samples)
{
    folder_.write("microphone", {reinterpret_cast<const char*>(samples.data()), samples.size() * 2});
}

std::vector<std::int16_t> AlsaFiles::played() const
{
    const std::string bytes = folder_.read("speaker");
    const auto* first = reinterpret_cast<const std::int16_t*>(bytes.data());
    return {first, first + bytes.size() / 2};
}
