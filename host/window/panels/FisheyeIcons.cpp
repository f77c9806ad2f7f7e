#include "host/window/panels/FisheyeIcons.h"

#include "host/Theme.h"

#include <QPainter>

#include <algorithm>
#include <cstring>

namespace quillmark::lumen_wall {

namespace {

struct Arrangement
{
    const char* windows; // O the round picture, P a panorama, v a view; in the order of the cells
    const char* name;
};

constexpr Arrangement kTable[kArrangements] = {
    {"O", "The round picture"},
    {"P", "Panorama, unrolled"},
    {"v", "One view"},
    {"P", "Panorama on a cylinder"},
    {"vvP", "Two views and a panorama"},
    {"Ovvv", "The round picture and three views"},
    {"vPvv", "A panorama and three views"},
    {"vvvv", "Four views"},
    {"vvvvOvvvv", "Eight views round the round picture"},
    {"vvvvPvvvv", "Eight views round a panorama"},
    {"vvvvvvvvv", "Nine views"},
    {"v", "One view of the whole"},
    {"P", "The whole picture of a camera on a wall"},
    {"Pvvv", "The whole picture and three views"},
    {"vvvvPvvvv", "Eight views round the whole picture"},
    {"vv", "Two views"},
    {"vP", "A view above a panorama"},
    {"vvvvvvP", "Six views above a panorama"},
};

constexpr int kColumnsOnly = 15, kOverBand = 16, kSixOverBand = 17;
constexpr double kThird = 1.0 / 3;

QRectF cellOf(int arrangement, int count, int cell)
{
    if (arrangement == kColumnsOnly)
        return {cell * 0.5, 0, 0.5, 1};
    if (arrangement == kOverBand)
        return cell == 0 ? QRectF(0, 0, 1, 2 * kThird) : QRectF(0, 2 * kThird, 1, kThird);
    if (arrangement == kSixOverBand && cell == count - 1)
        return {0, 2 * kThird, 1, kThird};
    const int side = count == 1 ? 1 : count <= 4 ? 2 : 3;
    return {double(cell % side) / side, double(cell / side) / side, 1.0 / side, 1.0 / side};
}

void drawWindow(QPainter& painter, const QRectF& cell, char kind)
{
    const QPointF middle = cell.center();
    const double half = std::min(cell.width(), cell.height()) / 2;
    painter.drawRect(cell);
    painter.save();
    painter.setPen(QPen(QColor(theme::kAccent), 2));
    painter.setBrush(kind == 'O' ? Qt::NoBrush : QBrush(QColor(theme::kAccent)));
    if (kind == 'O')
        painter.drawEllipse(middle, half * 0.62, half * 0.62);
    if (kind == 'P')
        painter.drawRect(
            QRectF(middle.x() - cell.width() * 0.3, middle.y() - half * 0.12, cell.width() * 0.6, half * 0.24));
    if (kind == 'v')
        painter.drawEllipse(middle, half * 0.16, half * 0.16);
    painter.restore();
}

} // namespace

QIcon arrangementIcon(int arrangement)
{
    constexpr int kSize = 56, kEdge = 4;
    QPixmap picture(kSize, kSize);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor("#9aa5b1"), 2));
    const char* const windows = kTable[arrangement].windows;
    const int count = static_cast<int>(std::strlen(windows));
    constexpr double kInner = kSize - 2 * kEdge;
    for (int cell = 0; cell < count; ++cell) {
        const QRectF place = cellOf(arrangement, count, cell);
        drawWindow(
            painter,
            {kEdge + place.x() * kInner, kEdge + place.y() * kInner, place.width() * kInner, place.height() * kInner},
            windows[cell]);
    }
    return QIcon(picture);
}

const char* arrangementName(int arrangement)
{
    return kTable[arrangement].name;
}

} // namespace quillmark::lumen_wall
