#include "bench/peers/PeerWall.h"

#include "bench/wall/Measure.h"

#include <cmath>

namespace bench {

PeerFrame::PeerFrame(int windows, QSize size)
{
    widget_.setWindowFlags(Qt::FramelessWindowHint);
    widget_.setFixedSize(size);
    const int side = static_cast<int>(std::ceil(std::sqrt(windows)));
    const QSize cell = size / side;
    for (int i = 0; i < windows; ++i)
        cells_.emplace_back(QPoint(i % side * cell.width(), i / side * cell.height()), cell);
    widget_.show();
    runFor(1);
}

} // namespace bench
