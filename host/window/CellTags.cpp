#include "host/window/CellTags.h"

#include "host/window/Mark.h"

#include <QEvent>
#include <QWindow>

namespace quillmark::lumen_wall {

namespace {

constexpr int kInset = 6;
constexpr int kWidestHint = 260;

std::unique_ptr<QLabel> makeLabel(const char* name, QWidget* frame)
{
    auto label = std::make_unique<QLabel>(frame);
    label->setObjectName(name);
    label->setAttribute(Qt::WA_NativeWindow);
    label->winId();
    label->windowHandle()->setFlag(Qt::WindowTransparentForInput);
    return label;
}

QString tagText(int index, const CellState& state)
{
    const QString number = QString::number(index + 1);
    const QString trouble = state.trouble.isEmpty() ? QString() : " · " + state.trouble;
    const QString recording = state.recording ? "  " + recordingText(*state.recording) : QString();
    return state.source.isEmpty() ? number : number + "  " + titleOf(state) + trouble + recording;
}

} // namespace

CellTags::CellTags(Operator& wall, QWidget* frame)
    : operator_(wall)
    , frame_(frame)
{
    connect(&wall.deck().cells(), &CellBook::changed, this, &CellTags::refresh);
    connect(&wall.deck(), &Deck::selectionChanged, this, &CellTags::refresh);
    refresh();
}

void CellTags::setShown(bool shown)
{
    shown_ = shown;
    refresh();
}

void CellTags::refresh()
{
    const auto count = static_cast<size_t>(operator_.deck().cells().count());
    while (tags_.size() < count)
        tags_.push_back({makeLabel("cellTag", frame_), makeLabel("cellHint", frame_)});
    tags_.resize(count);
    for (size_t i = 0; i < count; ++i)
        update(static_cast<int>(i), tags_[i]);
}

void CellTags::update(int index, Tag& tag)
{
    QWidget* cell = cellWidget(operator_.deck().wall(), index);
    watch(cell);
    const CellState state = operator_.deck().cells().state(index);
    const QRect room = cell->geometry().adjusted(kInset, kInset, -kInset, -kInset);
    setMark(*tag.name, "selected", index == operator_.deck().selected());
    setMark(*tag.name, "trouble", !state.trouble.isEmpty());
    setMark(*tag.name, "recording", state.recording.has_value());
    tag.name->setText(tagText(index, state));
    tag.hint->setText(room.width() > kWidestHint ? "Drop a video here, or press Ctrl+O" : "Ctrl+O");
    place(*tag.name, room, Qt::AlignLeft | Qt::AlignTop);
    place(*tag.hint, room, Qt::AlignCenter);
    const bool standsStill = !state.trouble.isEmpty(); // must not pass for live, names or not
    tag.name->setVisible((shown_ || standsStill) && !cell->isHidden());
    tag.hint->setVisible(shown_ && !cell->isHidden() && state.motion == Motion::None && state.source.isEmpty());
}

void CellTags::place(QLabel& label, const QRect& room, Qt::Alignment alignment)
{
    const QSize size = label.sizeHint().boundedTo(room.size());
    label.setGeometry(QStyle::alignedRect(Qt::LeftToRight, alignment, size, room));
    label.raise();
}

void CellTags::watch(QWidget* cell)
{
    cell->removeEventFilter(this);
    cell->installEventFilter(this);
}

bool CellTags::eventFilter(QObject* watched, QEvent* event)
{
    const QEvent::Type type = event->type();
    const bool moves = type == QEvent::Move || type == QEvent::Resize || type == QEvent::Show || type == QEvent::Hide;
    if (moves && !pending_) {
        pending_ = true;
        QMetaObject::invokeMethod(
            this,
            [this] {
                pending_ = false;
                refresh();
            },
            Qt::QueuedConnection);
    }
    return QObject::eventFilter(watched, event);
}

} // namespace quillmark::lumen_wall
