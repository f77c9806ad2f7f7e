#pragma once

#include <QDateTime>
#include <QHash>
#include <QJsonObject>
#include <QJsonValue>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <optional>

namespace quillmark::lumen_wall {

// A recording that runs in a cell. Splits are part of it.
struct Recording
{
    QString name;
    QDateTime since;
    qint64 bytes = 0; // on the disk, all parts together
};

enum class Motion
{
    None,
    Forward,
    Reverse
};

// What the host knows of one cell; the library is asked for the rest.
struct CellState
{
    QString source, auth; // kept after a stop, so that play starts it again
    Motion motion = Motion::None;
    bool paused = false;
    int speedStep = 0; // -3 to 3: 1/8 to 8 times
    int ratio = 0;
    int volume = 100;
    bool sound = false;
    std::optional<Recording> recording;
    int delay = 0;   // of a live stream's picture, in tenths of a second
    QString trouble; // what the stream last complained of, empty when all is well
};

QString titleOf(const CellState& state);
QString speedText(int speedStep);
QString durationText(const QDateTime& since);
QString recordingText(const Recording& recording); // how long and how much

// Follows the successful calls, whoever made them, and keeps a state for each cell of a wall. States hang on the cells'
// widgets, so they move with them from layout to layout. Main thread.
class CellBook : public QObject
{
    Q_OBJECT

public:
    explicit CellBook(QWidget* wall);

    int count() const;
    CellState state(int index) const;
    void setTrouble(int index, const QString& trouble);
    void setDelay(int index, int tenths);
    void setRecordedBytes(int index, qint64 bytes);
    void endRecording(int index); // that has ended by itself

    void note(const QString& function, const QJsonObject& args);

    // All windows show views of one fisheye stream, and share a state.
    bool isOneStream() const { return oneStream_; }

signals:
    void changed();
    void layoutChanged();

private:
    using Note = void (CellBook::*)(CellState&, const QJsonObject&);
    struct Row;
    void note(const Row& row, const QJsonObject& args);
    static const QHash<QString, Row>& rows();

    void notePlay(CellState& state, const QJsonObject& args);
    void noteReverse(CellState& state, const QJsonObject& args);
    void noteStop(CellState& state, const QJsonObject& args);
    void notePause(CellState& state, const QJsonObject& args);
    void noteResume(CellState& state, const QJsonObject& args);
    void noteFast(CellState& state, const QJsonObject& args);
    void noteSlow(CellState& state, const QJsonObject& args);
    void noteStep(CellState& state, const QJsonObject& args);
    void noteSound(CellState& state, const QJsonObject& args);
    void noteSilence(CellState& state, const QJsonObject& args);
    void noteVolume(CellState& state, const QJsonObject& args);
    void noteRatio(CellState& state, const QJsonObject& args);
    void noteRecording(CellState& state, const QJsonObject& args);
    void noteRecordingEnd(CellState& state, const QJsonObject& args);

    void noteCorrection(const QString& function, const QJsonObject& args);
    void setOneStream(bool on);
    CellState* stateOf(QWidget* cell);

    QWidget* const wall_;
    QHash<QObject*, CellState> states_; // by cell, that of one stream by the wall
    bool oneStream_ = false;
};

} // namespace quillmark::lumen_wall
