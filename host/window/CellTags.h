#pragma once

#include "host/wall/Operator.h"

#include <QLabel>
#include <QObject>

#include <memory>
#include <vector>

namespace quillmark::lumen_wall {

// Over each cell a small tag with its number and source, and in an empty cell a hint. The video windows are native, so
// the labels are native windows beside the wall, kept on top of it and without an ear for the mouse.
class CellTags : public QObject
{
    Q_OBJECT

public:
    CellTags(Operator& wall, QWidget* frame);

    bool shown() const { return shown_; }
    void setShown(bool shown);
    void refresh();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Tag
    {
        std::unique_ptr<QLabel> name, hint;
    };

    void watch(QWidget* cell);
    void update(int index, Tag& tag);
    void place(QLabel& label, const QRect& room, Qt::Alignment alignment);

    Operator& operator_;
    QWidget* const frame_;
    std::vector<Tag> tags_;
    bool shown_ = true;
    bool pending_ = false;
};

} // namespace quillmark::lumen_wall
