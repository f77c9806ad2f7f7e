#pragma once

#include "bench/wall/Program.h"
#include "bench/wall/Wall.h"

#include <QRect>
#include <QWidget>

#include <memory>
#include <vector>

namespace bench {

// A top level window of a fixed size, cut into a square grid.
class PeerFrame
{
public:
    PeerFrame(int windows, QSize size);

    QWidget& widget() { return widget_; }
    const std::vector<QRect>& cells() const { return cells_; }

private:
    QWidget widget_;
    std::vector<QRect> cells_;
};

// A wall that another library fills. A `Cell` is made of (QWidget& wall, const QRect& place) and has
// play(const QString& clip) and shown(), its new pictures since the start.
template <class Cell> class PeerWall : public Wall
{
public:
    PeerWall(int windows, QSize size)
        : frame_(windows, size)
    {
        for (const QRect& place : frame_.cells())
            cells_.push_back(std::make_unique<Cell>(frame_.widget(), place));
    }

    void hide() override { frame_.widget().hide(); }

    void play(const QString& clip) override
    {
        for (const auto& cell : cells_)
            cell->play(clip);
    }

    std::uint64_t shown() const override
    {
        std::uint64_t shown = 0;
        for (const auto& cell : cells_)
            shown += cell->shown();
        return shown;
    }

    int windowsWithPicture() const override
    {
        int windows = 0;
        for (const auto& cell : cells_)
            windows += cell->shown() > 0 ? 1 : 0;
        return windows;
    }

private:
    PeerFrame frame_;
    std::vector<std::unique_ptr<Cell>> cells_;
};

// The main() of a program that measures such a wall.
template <class Cell> int printPeerWall(int argc, char** argv, void (*prepare)() = nullptr)
{
    const Program program(argc, argv, wallOptions());
    if (prepare)
        prepare();
    return printWall(program, [](int windows, QSize size) { return std::make_unique<PeerWall<Cell>>(windows, size); });
}

} // namespace bench
