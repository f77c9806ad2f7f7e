#pragma once

#include "host/wall/Operator.h"

#include <QLabel>
#include <QPushButton>
#include <QStatusBar>

namespace quillmark::lumen_wall {

// On the left the selected cell, on the right what happened last; a click there asks for all events.
class StatusLine : public QStatusBar
{
    Q_OBJECT

public:
    explicit StatusLine(Operator& wall);

    void refresh(const CellState& state, bool playing);

signals:
    void eventsWanted();

private:
    QString pictureSize() const;
    void showTalk();
    void report(int severity, int cell, const QString& text);

    Operator& operator_;
    QLabel* const cell_;
    QLabel* const talk_;
    QPushButton* const event_;
};

} // namespace quillmark::lumen_wall
