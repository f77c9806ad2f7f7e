#pragma once

#include "src/player/IPlayer.h"

#include <QString>

class QWheelEvent;
class QWidget;

namespace quillmark::lumen_deck {

// What a stream's URL says it is; decides where its recordings go.
enum class StreamKind
{
    Live = 0,
    Recorded = 1,
    Other = 2
};

// The state of the stream in one window; a direct child of the window, which it outlives no stop. The engine does the
// streaming: apart from the wheel, the timer and the destructor nothing here calls it. Main thread only.
class Player : public IPlayer
{
    Q_OBJECT
public:
    enum Status
    {
        Playing = 0,
        ReversePlaying = 1,
        Stopped = 2,
        Paused = 3,
        FrameStepping = 4
    };

    explicit Player(QWidget* parent);
    ~Player() override;

    int playStatus() const override { return status_; }
    bool playing() const override { return status_ != Stopped; }
    bool playback() const override { return playing() && playback_; }
    bool https() const override { return https_; }
    bool saving() const override { return saving_; }
    float playSpeed() const override;
    std::uint16_t volume() const override;
    int playId() const override { return playId_; }
    StreamKind streamKind() const { return streamKind_; }

    // Neither is called on a playing window.
    void play(int playId) { start(playId, Playing); }
    void reversePlay(int playId) { start(playId, ReversePlaying); }

    // These three answer whether the player was playing.
    bool pause() { return become(Paused); }
    bool resume() { return become(Playing); }
    bool frameForward() { return become(FrameStepping); }

    void stop(); // a recording has ended before, or ends with the stream
    void setHttps(bool https) { https_ = https; }
    void setSaving(bool saving) { saving_ = saving; }
    void setStreamKind(StreamKind kind) { streamKind_ = kind; }

    // Watches a recording that has begun: its size and the disk, once a second. `fileName` is its path without ".mp4".
    void checkVideoSave(QString fileName, int packageSize);

public slots:
    void onMouseWheelEvent(QWheelEvent* event);

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    void start(int playId, Status status);
    bool become(Status status);
    bool endForLowDisk();
    void startNextPart();
    void endTimer();

    Status status_ = Stopped;
    bool saving_ = false;
    int playId_ = -1;
    bool playback_ = false;
    bool https_ = false;
    StreamKind streamKind_ = StreamKind::Live;

    // Of the recording.
    QString fileName_;
    int packageSize_ = 0; // bytes
    int timerId_ = 0;     // 0 when none runs
    int partNumber_ = 0;  // of the file that is being written, from 1
};

} // namespace quillmark::lumen_deck
