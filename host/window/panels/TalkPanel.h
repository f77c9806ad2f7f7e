#pragma once

#include "host/wall/Operator.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QWidget>

namespace quillmark::lumen_wall {

// Talks with a device: where it is opened, where the sound goes, and how the talk goes on.
class TalkPanel : public QWidget
{
    Q_OBJECT

public:
    TalkPanel(Operator& wall, QWidget* parent);

    QSize sizeHint() const override { return {300, 600}; }

protected:
    void showEvent(QShowEvent* event) override;

private:
    void toggle();
    void refresh();
    TalkTarget target() const;
    void show(const TalkTarget& target);

    Talk& talk_;
    QLineEdit* const open_;
    QLineEdit* const data_;
    QLineEdit* const close_;
    QComboBox* const codec_;
    QLineEdit* const user_;
    QLineEdit* const password_;
    QPushButton* const button_;
    QLabel* const state_;
    QTimer clock_;
    bool filled_ = false; // with what was talked to before
};

} // namespace quillmark::lumen_wall
