#include "host/window/Actions.h"

#include <QIcon>
#include <QPainter>

namespace quillmark::lumen_wall {

namespace {

using Test = bool (*)(const WallView&);

bool always(const WallView&)
{
    return true;
}
bool playing(const WallView& view)
{
    return view.playing;
}
bool hasSource(const WallView& view)
{
    return view.playing || !view.cell.source.isEmpty();
}
bool runsForward(const WallView& view)
{
    return view.playing && !view.cell.paused && view.cell.motion == Motion::Forward;
}
bool canPlay(const WallView& view)
{
    return !runsForward(view);
}
bool paused(const WallView& view)
{
    return view.playing && view.cell.paused;
}
bool reversing(const WallView& view)
{
    return view.playing && view.cell.motion == Motion::Reverse;
}
bool sounding(const WallView& view)
{
    return view.playing && view.cell.sound;
}
bool dragable(const WallView& view)
{
    return view.dragable;
}
bool recording(const WallView& view)
{
    return view.playing && view.cell.recording;
}
template <int side> bool gridIs(const WallView& view)
{
    return view.grid == side;
}
template <int side> void setGrid(Operator& wall)
{
    wall.setGrid(side);
}

struct Row
{
    const char* group;
    const char* name; // of the action and of its icon
    const char* tip;
    const char* keys; // the first is shown, several are parted by a blank
    void (*verb)(Operator&);
    Test enabled;
    Test checked; // null: the action is no switch
};

const Row rows[] = {
    {"grid", "grid-1", "One window", "1", &setGrid<1>, &always, &gridIs<1>},
    {"grid", "grid-2", "2 by 2 windows", "2", &setGrid<2>, &always, &gridIs<2>},
    {"grid", "grid-3", "3 by 3 windows", "3", &setGrid<3>, &always, &gridIs<3>},
    {"grid", "grid-4", "4 by 4 windows", "4", &setGrid<4>, &always, &gridIs<4>},
    {"grid", "move", "Move windows with the mouse", "D", [](Operator& wall) { wall.setDragable(!wall.dragable()); },
     &always, &dragable},
    {"play", "reverse", "Play backwards", "R", [](Operator& wall) { wall.reverse(); }, &hasSource, &reversing},
    {"play", "play", "Play", "P", [](Operator& wall) { wall.play(); }, &canPlay, nullptr},
    {"play", "pause", "Pause, and go on", "Space", [](Operator& wall) { wall.pause(); }, &hasSource, &paused},
    {"play", "step", "One picture forward", ". N", [](Operator& wall) { wall.step(); }, &playing, nullptr},
    {"play", "stop", "Stop", "S", [](Operator& wall) { wall.stop(); }, &playing, nullptr},
    {"capture", "record", "Record this window", "Ctrl+R", [](Operator& wall) { wall.toggleRecording(); }, &playing,
     &recording},
    {"capture", "snapshot", "Save the picture of this window", "Ctrl+S", [](Operator& wall) { wall.snapshot(); },
     &playing, nullptr},
    {"capture", "folder", "Show the recordings", "", [](Operator& wall) { wall.showRecordings(); }, &always, nullptr},
    {"slower", "slower", "Half the speed", "-", [](Operator& wall) { wall.slower(); }, &playing, nullptr},
    {"faster", "faster", "Twice the speed", "+ =", [](Operator& wall) { wall.faster(); }, &playing, nullptr},
    {"sound", "sound", "Hear this window", "M", [](Operator& wall) { wall.toggleSound(); }, &playing, &sounding},
};

} // namespace

QIcon makeIcon(const QString& name)
{
    constexpr QSize size(40, 40); // sharp on screens of twice the density
    const QPixmap drawing = QIcon(":/icons/" + name + ".svg").pixmap(size);
    QPixmap faint(drawing.size());
    faint.fill(Qt::transparent);
    QPainter painter(&faint);
    painter.setOpacity(0.3);
    painter.drawPixmap(0, 0, drawing);
    QIcon icon(drawing);
    icon.addPixmap(faint, QIcon::Disabled);
    return icon;
}

QAction* makeAction(QObject* parent, const QString& icon, const QString& tip, const QString& keys)
{
    auto* action = new QAction(makeIcon(icon), tip, parent);
    QList<QKeySequence> shortcuts;
    for (const QString& key : keys.split(' ', Qt::SkipEmptyParts))
        shortcuts.append(QKeySequence(key));
    action->setShortcuts(shortcuts);
    action->setToolTip(shortcuts.isEmpty() ? tip : QStringLiteral("%1  (%2)").arg(tip, shortcuts.first().toString()));
    return action;
}

Actions::Actions(Operator& wall)
{
    for (const Row& row : rows) {
        QAction* action = makeAction(this, row.name, row.tip, row.keys);
        action->setCheckable(row.checked != nullptr);
        connect(action, &QAction::triggered, &wall, [verb = row.verb, &wall] { verb(wall); });
        actions_.insert(row.name, action);
    }
}

void Actions::addTo(QToolBar& bar, const char* group)
{
    for (const Row& row : rows) {
        if (qstrcmp(row.group, group) == 0)
            bar.addAction(action(row.name));
    }
}

void Actions::refresh(const WallView& view)
{
    for (const Row& row : rows) {
        action(row.name)->setEnabled(row.enabled(view));
        if (row.checked)
            action(row.name)->setChecked(row.checked(view));
    }
}

} // namespace quillmark::lumen_wall
