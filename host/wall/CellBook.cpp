#include "host/wall/CellBook.h"

#include "host/wall/CallTable.h"

#include <QFileInfo>
#include <QLayout>
#include <QLocale>
#include <QUrl>

#include <algorithm>

namespace quillmark::lumen_wall {

namespace {

constexpr int kFastestStep = 3;

void start(CellState& state, const QJsonObject& args, Motion motion)
{
    state.source = args.value("url").toString();
    state.auth = args.value("auth").toString();
    state.motion = motion;
    state.paused = false;
    state.speedStep = 0;
    state.sound = false;
    state.delay = 0;
    state.trouble.clear();
}

} // namespace

QString titleOf(const CellState& state)
{
    const QUrl url(state.source);
    if (url.scheme().isEmpty() || url.isLocalFile())
        return QFileInfo(state.source).fileName();
    return url.host().isEmpty() ? state.source : url.toString(QUrl::RemoveUserInfo | QUrl::RemoveQuery);
}

QString speedText(int speedStep)
{
    return speedStep >= 0 ? QStringLiteral("%1×").arg(1 << speedStep) : QStringLiteral("1/%1×").arg(1 << -speedStep);
}

QString durationText(const QDateTime& since)
{
    const qint64 seconds = since.secsTo(QDateTime::currentDateTime());
    return QStringLiteral("%1:%2").arg(seconds / 60).arg(seconds % 60, 2, 10, QLatin1Char('0'));
}

QString recordingText(const Recording& recording)
{
    return QStringLiteral("● %1 · %2")
        .arg(durationText(recording.since),
             QLocale::c().formattedDataSize(recording.bytes, 1, QLocale::DataSizeSIFormat));
}

// How a function changes the book: for the cell that it names, for every cell, or for the layout.
struct CellBook::Row
{
    enum class Reach
    {
        OneCell,
        EveryCell,
        Layout
    } reach;
    Note note;
};

const QHash<QString, CellBook::Row>& CellBook::rows()
{
    using Reach = Row::Reach;
    static const QHash<QString, Row> table{
        {"LD_Play", {Reach::OneCell, &CellBook::notePlay}},
        {"LD_ReversePlay", {Reach::OneCell, &CellBook::noteReverse}},
        {"LD_Stop", {Reach::OneCell, &CellBook::noteStop}},
        {"LD_StopRealPlayAll", {Reach::EveryCell, &CellBook::noteStop}},
        {"LD_Pause", {Reach::OneCell, &CellBook::notePause}},
        {"LD_Resume", {Reach::OneCell, &CellBook::noteResume}},
        {"LD_Fast", {Reach::OneCell, &CellBook::noteFast}},
        {"LD_Slow", {Reach::OneCell, &CellBook::noteSlow}},
        {"LD_FrameForward", {Reach::OneCell, &CellBook::noteStep}},
        {"LD_OpenSound", {Reach::OneCell, &CellBook::noteSound}},
        {"LD_CloseSound", {Reach::EveryCell, &CellBook::noteSilence}},
        {"LD_SetVolume", {Reach::OneCell, &CellBook::noteVolume}},
        {"LD_SetWndRatioMode", {Reach::OneCell, &CellBook::noteRatio}},
        {"LD_StartSave", {Reach::OneCell, &CellBook::noteRecording}},
        {"LD_StopSave", {Reach::OneCell, &CellBook::noteRecordingEnd}},
        {"LD_SetLayout", {Reach::Layout, nullptr}},
        {"LD_ArrangeWindow", {Reach::Layout, nullptr}},
        {"LD_ArrangeFECWindow", {Reach::Layout, nullptr}},
        {"LD_Initialize", {Reach::Layout, nullptr}},
    };
    return table;
}

CellBook::CellBook(QWidget* wall)
    : wall_(wall)
{
}

int CellBook::count() const
{
    return wall_->layout() ? wall_->layout()->count() : 0;
}

CellState CellBook::state(int index) const
{
    return states_.value(oneStream_ ? wall_ : cellWidget(wall_, index));
}

void CellBook::setTrouble(int index, const QString& trouble)
{
    CellState* state = stateOf(cellWidget(wall_, index));
    if (!state || state->trouble == trouble)
        return;
    state->trouble = trouble;
    emit changed();
}

void CellBook::setDelay(int index, int tenths)
{
    CellState* state = stateOf(cellWidget(wall_, index));
    if (!state || state->delay == tenths)
        return;
    state->delay = tenths;
    emit changed();
}

void CellBook::setRecordedBytes(int index, qint64 bytes)
{
    CellState* state = stateOf(cellWidget(wall_, index));
    if (!state || !state->recording)
        return;
    state->recording->bytes = bytes;
    emit changed();
}

void CellBook::endRecording(int index)
{
    CellState* state = stateOf(cellWidget(wall_, index));
    if (!state || !state->recording)
        return;
    state->recording.reset();
    emit changed();
}

void CellBook::note(const QString& function, const QJsonObject& args)
{
    const auto row = rows().constFind(function);
    if (row != rows().constEnd())
        note(*row, args);
    noteCorrection(function, args);
    emit changed();
}

void CellBook::note(const Row& row, const QJsonObject& args)
{
    if (row.reach == Row::Reach::EveryCell) {
        for (CellState& state : states_)
            (this->*row.note)(state, args);
    }
    if (row.reach == Row::Reach::OneCell) {
        if (CellState* state = stateOf(cellWidget(wall_, args.value("wndIndex"))))
            (this->*row.note)(*state, args);
    }
    if (row.reach == Row::Reach::Layout)
        emit layoutChanged();
}

void CellBook::noteCorrection(const QString& function, const QJsonObject& args)
{
    const int type = args.value("type").toVariant().toInt();
    if (function == "LD_SetCorrectionType" && (type == 0 || type == 1))
        setOneStream(type == 1);
    if (function == "LD_StopRealPlayAll")
        setOneStream(false);
}

void CellBook::setOneStream(bool on)
{
    oneStream_ = on;
    states_.remove(wall_);
}

void CellBook::notePlay(CellState& state, const QJsonObject& args)
{
    start(state, args, Motion::Forward);
}

void CellBook::noteReverse(CellState& state, const QJsonObject& args)
{
    start(state, args, Motion::Reverse);
}

void CellBook::noteStop(CellState& state, const QJsonObject&)
{
    state.motion = Motion::None;
    state.paused = false;
    state.sound = false;
    state.recording.reset();
    state.trouble.clear();
}

void CellBook::notePause(CellState& state, const QJsonObject&)
{
    state.paused = true;
}

void CellBook::noteResume(CellState& state, const QJsonObject&)
{
    state.paused = false;
}

void CellBook::noteFast(CellState& state, const QJsonObject&)
{
    state.speedStep = std::min(state.speedStep + 1, kFastestStep);
}

void CellBook::noteSlow(CellState& state, const QJsonObject&)
{
    state.speedStep = std::max(state.speedStep - 1, -kFastestStep);
}

void CellBook::noteStep(CellState& state, const QJsonObject&)
{
    state.paused = true;
}

// The engine has one open sound: opening it in one cell closes it in the others.
void CellBook::noteSound(CellState& state, const QJsonObject&)
{
    for (CellState& other : states_)
        other.sound = false;
    state.sound = true;
}

void CellBook::noteSilence(CellState& state, const QJsonObject&)
{
    state.sound = false;
}

void CellBook::noteVolume(CellState& state, const QJsonObject& args)
{
    state.volume = std::clamp(args.value("volume").toInt(), 0, 100);
}

void CellBook::noteRatio(CellState& state, const QJsonObject& args)
{
    const int mode = args.value("mode").toInt();
    state.ratio = mode >= 1 && mode <= 4 ? mode : 0;
}

void CellBook::noteRecording(CellState& state, const QJsonObject& args)
{
    state.recording = Recording{args.value("fileName").toString(), QDateTime::currentDateTime()};
}

void CellBook::noteRecordingEnd(CellState& state, const QJsonObject&)
{
    state.recording.reset();
}

CellState* CellBook::stateOf(QWidget* cell)
{
    if (oneStream_)
        return &states_[wall_];
    if (!cell)
        return nullptr;
    if (!states_.contains(cell))
        connect(cell, &QObject::destroyed, this, [this](QObject* gone) { states_.remove(gone); });
    return &states_[cell];
}

} // namespace quillmark::lumen_wall
