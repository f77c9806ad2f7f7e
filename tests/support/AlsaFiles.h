#pragma once

#include "tests/support/Engine.h"

#include <cstdint>
#include <vector>

// ALSA's default device made of two files, in a folder of its own, as long as it lives: what is played can be read, and
// the microphone says what was written for it. Samples are 16 bits, interleaved.
class AlsaFiles
{
public:
    AlsaFiles();
    ~AlsaFiles();

    // The device fails as one does that was unplugged, until it is put back.
    void unplug() { writeConfig("/dev/full"); }
    void putBack() { writeConfig(folder_ / "speaker"); }

    void speak(const std::vector<std::int16_t>& samples);
    std::vector<std::int16_t> played() const;

private:
    void writeConfig(const std::string& speaker);

    engine_test::Folder folder_;
};
