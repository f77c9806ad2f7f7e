#include "tests/support/AlsaFiles.h"

#include <cstdlib>
#include <fstream>

namespace fs = std::filesystem;

AlsaFiles::AlsaFiles()
{
    std::string name = (fs::temp_directory_path() / "alsa-XXXXXX").string();
    folder_ = mkdtemp(name.data());
    speak({});
    putBack();
    setenv("ALSA_CONFIG_PATH", (folder_ / "asound.conf").c_str(), 1);
}

AlsaFiles::~AlsaFiles()
{
    unsetenv("ALSA_CONFIG_PATH");
    fs::remove_all(folder_);
}

// Replaced whole: ALSA looks at it whenever a device is opened.
void AlsaFiles::writeConfig(const fs::path& speaker)
{
    const fs::path written = folder_ / "asound.new";
    std::ofstream(written) << "pcm.null { type null }\n"
                           << "pcm.out { type file slave.pcm null file " << speaker << " format raw }\n"
                           << "pcm.in { type file slave.pcm null file /dev/null infile " << folder_ / "microphone"
                           << " format raw }\n"
                           << "pcm.!default { type asym playback.pcm out capture.pcm in }\n";
    fs::rename(written, folder_ / "asound.conf");
}

void AlsaFiles::speak(const std::vector<std::int16_t>& samples)
{
    std::ofstream(folder_ / "microphone", std::ios::binary)
        .write(reinterpret_cast<const char*>(samples.data()), static_cast<std::streamsize>(samples.size() * 2));
}

std::vector<std::int16_t> AlsaFiles::played() const
{
    const fs::path file = folder_ / "speaker";
    if (!fs::exists(file))
        return {};
    std::vector<std::int16_t> samples(fs::file_size(file) / 2);
    std::ifstream(file, std::ios::binary)
        .read(reinterpret_cast<char*>(samples.data()), static_cast<std::streamsize>(samples.size() * 2));
    return samples;
}
