#pragma once

#include <QString>

#include <cstdint>

namespace bench {

// A grid of windows that play one clip, on show from the start. Made and used on the main thread.
class Wall
{
public:
    virtual ~Wall() = default;

    virtual void play(const QString& clip) = 0; // in every window
    virtual void hide() = 0;
    virtual std::uint64_t shown() const = 0; // new pictures since the start, of all windows
    virtual int windowsWithPicture() const = 0;
};

} // namespace bench
