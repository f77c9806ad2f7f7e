#pragma once

#include <QObject>

#include <cstdint>

namespace quillmark::lumen_deck {

// What other layers may ask of the player of a window. A direct child of the play window.
class IPlayer : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    virtual int playStatus() const = 0; // 0 playing, 1 reverse, 2 stopped, 3 paused, 4 single frame
    virtual bool playing() const = 0;   // anything but stopped
    virtual bool playback() const = 0;
    virtual bool https() const = 0;
    virtual bool saving() const = 0;
    virtual float playSpeed() const = 0;
    virtual std::uint16_t volume() const = 0;
    virtual int playId() const = 0; // -1 when stopped
};

} // namespace quillmark::lumen_deck
