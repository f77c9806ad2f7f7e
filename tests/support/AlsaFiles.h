#pragma once

#include "tests/support/Engine.h"

#include <cstdint>
#include <vector>

// ALSA's default device made of two files, in a folder of its own, as long as it lives: what is played can be read, and
// the microphone says what was written for it. Samples are 16 bits, interleaved.
class AlsaFiles
{
public:
    AlsaFiles()
    {
        speak({});
        putBack();
        setenv("ALSA_CONFIG_PATH", (folder_ / "asound.conf").c_str(), 1);
    }
    ~AlsaFiles() { unsetenv("ALSA_CONFIG_PATH"); }

    // The device fails as one does that was unplugged, until it is put back.
    void unplug() { writeConfig("/dev/full"); }
    void putBack() { writeConfig(folder_ / "speaker"); }

    void speak(const std::vector<std::int16_t>& samples)
    {
        folder_.write("microphone", {reinterpret_cast<const char*>(samples.data()), samples.size() * 2});
    }
    std::vector<std::int16_t> played() const
    {
        const std::string bytes = folder_.read("speaker");
        const auto* first = reinterpret_cast<const std::int16_t*>(bytes.data());
        return {first, first + bytes.size() / 2};
    }

private:
    // Replaced whole: ALSA looks at it whenever a device is opened.
    void writeConfig(const std::string& speaker)
    {
        const QString config = R"(
            pcm.null { type null }
            pcm.out { type file slave.pcm null file "%1" format raw }
            pcm.in { type file slave.pcm null file /dev/null infile "%2" format raw }
            pcm.!default { type asym playback.pcm out capture.pcm in })";
        const std::string text = config.arg(speaker.c_str(), (folder_ / "microphone").c_str()).toStdString();
        std::filesystem::rename(folder_.write("asound.new", text), folder_ / "asound.conf");
    }

    engine_test::Folder folder_;
};
