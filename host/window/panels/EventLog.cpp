#include "host/window/panels/EventLog.h"

#include <QHeaderView>
#include <QTime>

namespace quillmark::lumen_wall {

namespace {

constexpr int kKept = 1000;
constexpr const char* kColours[] = {"#c9d1d9", "#f0b429", "#ff6b62"}; // by severity

} // namespace

EventLog::EventLog(Operator& wall, QWidget* parent)
    : QTreeWidget(parent)
{
    setHeaderLabels({"Time", "Window", "Event"});
    setRootIsDecorated(false);
    setAlternatingRowColors(true);
    setFocusPolicy(Qt::NoFocus);
    header()->setStretchLastSection(true);
    connect(&wall, &Operator::reported, this, &EventLog::add);
}

void EventLog::add(int severity, int cell, const QString& text)
{
    auto* row = new QTreeWidgetItem(
        {QTime::currentTime().toString("HH:mm:ss.zzz"), cell < 0 ? QString() : QString::number(cell + 1), text});
    row->setForeground(2, QColor(kColours[severity]));
    insertTopLevelItem(0, row);
    while (topLevelItemCount() > kKept)
        delete takeTopLevelItem(kKept);
}

} // namespace quillmark::lumen_wall
