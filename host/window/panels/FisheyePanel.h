#pragma once

#include "host/wall/Operator.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QStackedWidget>
#include <QToolButton>
#include <QWidget>

class QGridLayout;

namespace quillmark::lumen_wall {

// Round pictures: dewarped here, with views that turn, scan and cruise, or by the device, with boxes that are dragged.
class FisheyePanel : public QWidget
{
    Q_OBJECT

public:
    FisheyePanel(Operator& wall, QWidget* parent);

    QSize sizeHint() const override { return {300, 600}; }

protected:
    void showEvent(QShowEvent*) override { fisheye_.loadPresets(); }

private:
    QWidget* here();     // what is dewarped here
    QWidget* byDevice(); // what the device dewarps
    QWidget* arrangements();
    QLayout* sources();
    QLayout* pad();
    QToolButton* padButton(const char* icon, const char* tip, int direction);
    QLayout* movements();
    QLayout* presetButtons();
    QLayout* roles();
    QWidget* listener();

    void show(const QString& source, const QString& auth);
    void showAgain(); // with another mounting or arrangement
    void listen(bool on);
    void fillPresets();
    void refresh();
    QString sample() const; // a film of a known room, beside the program

    Operator& operator_;
    Fisheye& fisheye_;
    QStackedWidget* const pages_;
    QComboBox* const mounting_;
    QButtonGroup* const arrangements_;
    QPushButton* const show_;
    QPushButton* const sample_;
    QSlider* const speed_;
    QPushButton* const scan_;
    QPushButton* const cruise_;
    QListWidget* const presets_;
    QSpinBox* const dwell_;
    QSpinBox* const number_;
    QSpinBox* const boxes_;
    QLineEdit* const url_;
    QLineEdit* const user_;
    QLineEdit* const password_;
    QPushButton* const listen_;
    QWidget* moves_ = nullptr; // what needs a view
};

} // namespace quillmark::lumen_wall
