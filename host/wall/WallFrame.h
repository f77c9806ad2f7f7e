#pragma once

#include <QWidget>

namespace quillmark::lumen_wall {

// Holds the main widget of a wall and gives it its size back whenever the library has changed it: a new layout widens
// it by a pixel, a new ratio mode gives it an invalid size, both to make the cells lay themselves out again.
class WallFrame : public QWidget
{
    Q_OBJECT

public:
    explicit WallFrame(QWidget* parent = nullptr);

    QWidget* wall() const { return wall_; }

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void fit();

    QWidget* const wall_;
};

} // namespace quillmark::lumen_wall
