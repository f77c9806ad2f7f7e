#include "host/wall/Operator.h"

#include "host/Theme.h"
#include "host/wall/LocalSettings.h"
#include "host/wall/RecordingWatch.h"
#include "host/wall/StreamMessages.h"

#include <QDateTime>
#include <QJsonArray>
#include <QRegularExpression>

#include <algorithm>
#include <utility>

namespace quillmark::lumen_wall {

namespace {

constexpr int kRatioModes = 5;

} // namespace

Operator::Operator(Deck& deck)
    : deck_(deck)
    , fisheye_(deck)
    , talk_(deck)
    , transfers_(deck)
{
    connect(&deck_.events(), &EventHub::happened, this, &Operator::onEvent);
    connect(&deck_.cells(), &CellBook::layoutChanged, this, &Operator::onLayout);
    connect(&talk_, &Talk::reported, this, &Operator::reported);
    connect(&transfers_, &Transfers::reported, this, &Operator::reported);
    connect(&deck_, &Deck::failed, this,
            [this](const QString& text) { emit reported(static_cast<int>(Severity::Failure), -1, text); });
}

bool Operator::isPlaying(int cell) const
{
    return LD_IsWindowPlaying(deck_.wall(), cell);
}

int Operator::grid() const
{
    return !fisheye_.corrects() && deck_.cells().count() == grid_ * grid_ ? grid_ : 0;
}

// Leaves the views of a round picture; its stream is then shown as it is.
void Operator::setGrid(int side)
{
    const CellState round = fisheye_.corrects() ? current() : CellState();
    if (fisheye_.corrects())
        deck_.call("LD_StopRealPlayAll");
    grid_ = side;
    arrange();
    if (!round.source.isEmpty())
        open(0, round.source, round.auth);
}

void Operator::setDragable(bool on)
{
    dragable_ = on && !fisheye_.corrects(); // the mouse turns the views
    if (fisheye_.corrects()) {
        emit changed();
        return;
    }
    shrink();
    keepPlaces_ = true;
    arrange();
    keepPlaces_ = false;
}

void Operator::arrange()
{
    QJsonArray cells;
    for (int index = 0; index < grid_ * grid_; ++index)
        cells.append(cellDocument(index));
    deck_.call("LD_SetLayout", {{"windows", cells}});
    emit changed();
}

QJsonObject Operator::cellDocument(int index) const
{
    const QRectF place = keepPlaces_ ? placeOnScreen(index) : placeInGrid(index);
    return {
        {"wndIndex", index},
        {"ratio", deck_.cells().state(index).ratio},
        {"left", place.left()},
        {"top", place.top()},
        {"width", place.width()},
        {"height", place.height()},
        {"dragable", dragable_},
        {"border_color", theme::kAccent},
        {"background_color", theme::kCell},
    };
}

QRectF Operator::placeInGrid(int index) const
{
    const double side = 1.0 / grid_;
    return {index % grid_ * side, index / grid_ * side, side, side};
}

// The library cuts a fraction of the wall off to whole pixels, so half a pixel more keeps a cell where it is.
QRectF Operator::placeOnScreen(int index) const
{
    const QWidget* cell = cellWidget(deck_.wall(), index);
    if (!cell)
        return placeInGrid(index);
    const QSizeF wall = deck_.wall()->size();
    const QRectF place = cell->geometry();
    return {(place.left() + 0.5) / wall.width(), (place.top() + 0.5) / wall.height(),
            (place.width() + 0.5) / wall.width(), (place.height() + 0.5) / wall.height()};
}

// A cell that is the only one to be seen takes the whole wall.
void Operator::toggleEnlarged(int cell)
{
    enlarged_ = enlarged_ < 0 ? cell : -1;
    for (int other = 0; other < deck_.cells().count(); ++other) {
        if (other != cell)
            deck_.call(enlarged_ < 0 ? "LD_ShowWindow" : "LD_HideWindow", {{"index", other}});
    }
    emit changed();
}

void Operator::shrink()
{
    if (enlarged_ >= 0)
        toggleEnlarged(enlarged_);
}

void Operator::open(int cell, const QString& source, const QString& auth)
{
    if (isPlaying(cell))
        deck_.call("LD_Stop", {{"wndIndex", cell}});
    start(cell, source, auth);
}

void Operator::openFrom(int cell, const QStringList& sources)
{
    const int room = std::min(sources.size(), fisheye_.corrects() ? 1 : deck_.cells().count() - cell);
    for (int i = 0; i < room; ++i)
        open(cell + i, sources[i]);
}

void Operator::start(int cell, const QString& source, const QString& auth, const QString& from)
{
    deck_.call("LD_Play", {{"wndIndex", cell},
                           {"url", source},
                           {"auth", auth},
                           {"startTime", from},
                           {"customBuffNumber", readSettings(deck_).value("customBuffNumber").toVariant().toInt()}});
}

// The date of the picture on show, in the form that a start or stop time takes; empty if the source tells none.
QString Operator::moment(int cell) const
{
    const QJsonValue time = deck_.ask("LD_GetOSDTime", {{"wndIndex", cell}}).toObject().value("osdTime");
    return time.isDouble()
               ? QDateTime::fromSecsSinceEpoch(static_cast<qint64>(time.toDouble())).toString("yyyy-MM-dd hh:mm:ss")
               : QString();
}

void Operator::play()
{
    const int cell = deck_.selected();
    const CellState state = current();
    if (isPlaying(cell) && state.motion == Motion::Reverse)
        reverse();
    else if (isPlaying(cell))
        callSelected("LD_Resume");
    else if (!state.source.isEmpty())
        start(cell, state.source, state.auth);
    else
        emit sourceWanted(cell);
}

void Operator::pause()
{
    if (isPlaying(deck_.selected()) && !current().paused)
        callSelected("LD_Pause");
    else
        play();
}

void Operator::stop()
{
    callSelected("LD_Stop");
}

// Turns the direction where the picture stands, as far as the source tells its time.
void Operator::reverse()
{
    const CellState state = current();
    if (state.source.isEmpty())
        return;
    const QString here = moment(deck_.selected());
    stop();
    if (state.motion == Motion::Reverse)
        start(deck_.selected(), state.source, state.auth, here);
    else
        callSelected("LD_ReversePlay",
                     {{"url", state.source}, {"auth", state.auth}, {"startTime", ""}, {"stopTime", here}});
}

void Operator::step()
{
    callSelected("LD_FrameForward");
}

void Operator::faster()
{
    callSelected("LD_Fast");
}

void Operator::slower()
{
    callSelected("LD_Slow");
}

void Operator::toggleSound()
{
    if (current().sound)
        deck_.call("LD_CloseSound");
    else
        setSound(deck_.selected());
}

void Operator::setSound(int cell)
{
    deck_.call("LD_CloseSound");
    if (!isError(deck_.call("LD_OpenSound", {{"wndIndex", cell}})))
        deck_.call("LD_SetVolume", {{"wndIndex", cell}, {"volume", deck_.cells().state(cell).volume}});
}

void Operator::setVolume(int percent)
{
    callSelected("LD_SetVolume", {{"volume", std::clamp(percent, 0, 100)}});
}

void Operator::changeVolume(int percent)
{
    if (isPlaying(deck_.selected()))
        setVolume(current().volume + percent);
}

void Operator::setRatio(int mode)
{
    callSelected("LD_SetWndRatioMode", {{"mode", mode}});
}

void Operator::nextRatio()
{
    setRatio((current().ratio + 1) % kRatioModes);
}

void Operator::toggleRecording()
{
    if (current().recording)
        callSelected("LD_StopSave");
    else
        callSelected("LD_StartSave", {{"fileName", fileName()}});
}

void Operator::snapshot()
{
    const QString name = fileName();
    if (!isError(callSelected("LD_Snapshot", {{"fileName", name}})))
        emit reported(static_cast<int>(Severity::Note), deck_.selected(), "picture saved as " + name);
}

void Operator::showRecordings()
{
    deck_.call("LD_OpenDirectory", {{"dir", recordingFolders(deck_).first()}});
}

// Of a recording or a picture of the selected cell: its source and the time.
QString Operator::fileName() const
{
    QString name = titleOf(current()).section('.', 0, 0);
    name.replace(QRegularExpression("[^\\w-]+"), "_");
    return QStringLiteral("%1_%2_%3").arg(deck_.selected() + 1).arg(name, QTime::currentTime().toString("hhmmss"));
}

// A recording that the disk has ended is still open for the library.
void Operator::endRecording(int cell)
{
    if (deck_.cells().state(cell).recording)
        deck_.ask("LD_StopSave", {{"wndIndex", cell}});
    deck_.cells().endRecording(cell);
}

QJsonValue Operator::callSelected(const char* function, QJsonObject args)
{
    args.insert("wndIndex", deck_.selected());
    return deck_.call(function, args);
}

void Operator::onEvent(int type, const QJsonObject& document)
{
    const int cell = document.value("wndIndex").toInt(-1);
    if (type == LD_EVENT_DOUBLE_CLICKED && cell >= 0)
        toggleEnlarged(cell);
    if (type == LD_EVENT_STREAM)
        onStreamEvent(fisheye_.corrects() ? 0 : cell, document.value("eventType").toInt());
    if (type == LD_EVENT_FISHEYE_PTZ)
        emit reported(static_cast<int>(Severity::Note), -1, fisheyeReport(document.value("fishEyePTZInfo").toObject()));
}

void Operator::onStreamEvent(int cell, int code)
{
    if (const auto delay = delayOf(code)) {
        deck_.cells().setDelay(cell, *delay);
        return;
    }
    const StreamMessage message = streamMessage(code);
    using Effect = StreamMessage::Effect;
    if (message.effect == Effect::IsTrouble || message.effect == Effect::ClearsTrouble)
        deck_.cells().setTrouble(cell, message.effect == Effect::IsTrouble ? describe(code) : QString());
    if (message.effect == Effect::EndsRecording)
        endRecording(cell);
    if (message.effect == Effect::Ends && looping_)
        playAgain(cell);
    else
        emit reported(static_cast<int>(message.severity), cell, describe(code));
}

// A stream that ends in a cell outside of the layout is told of no cell: it is found when the cell is back.
void Operator::onLayout()
{
    enlarged_ = -1;
    const QSet<QWidget*> before = std::exchange(laidOut_, {});
    for (int cell = 0; cell < deck_.cells().count(); ++cell) {
        QWidget* const widget = cellWidget(deck_.wall(), cell);
        laidOut_.insert(widget);
        if (looping_ && !before.contains(widget) && hasEnded(cell))
            playAgain(cell);
    }
}

// At its end a stream has no next picture; one that goes on loses a picture's time.
bool Operator::hasEnded(int cell) const
{
    const CellState state = deck_.cells().state(cell);
    if (!isPlaying(cell) || state.motion != Motion::Forward || state.paused)
        return false;
    if (isError(deck_.ask("LD_FrameForward", {{"wndIndex", cell}})))
        return true;
    deck_.ask("LD_Resume", {{"wndIndex", cell}});
    return false;
}

void Operator::playAgain(int cell)
{
    const CellState before = deck_.cells().state(cell);
    if (before.motion != Motion::Forward)
        return;
    open(cell, before.source, before.auth);
    if (before.sound)
        setSound(cell);
}

} // namespace quillmark::lumen_wall
