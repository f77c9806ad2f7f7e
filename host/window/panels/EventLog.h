#pragma once

#include "host/wall/Operator.h"

#include <QTreeWidget>

namespace quillmark::lumen_wall {

// What has happened on the wall, newest on top.
class EventLog : public QTreeWidget
{
    Q_OBJECT

public:
    EventLog(Operator& wall, QWidget* parent);

    QSize sizeHint() const override { return {600, 150}; }

private:
    void add(int severity, int cell, const QString& text);
};

} // namespace quillmark::lumen_wall
