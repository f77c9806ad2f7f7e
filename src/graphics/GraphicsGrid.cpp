#include "src/graphics/GraphicsGrid.h"

#include "src/graphics/ShapeParts.h"
#include "src/util/JsonUtil.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace quillmark::lumen_deck {
namespace {

constexpr std::array<int, 8> kBitsMask{0x80, 0x40, 0x20, 0x10, 0x08, 0x04, 0x02, 0x01};

// Which of `count` strips across the window a coordinate falls into; outside the window a number outside theirs.
int stripOf(double coordinate, int count)
{
    const double strip = std::floor(coordinate / (1.0 / count));
    return static_cast<int>(std::clamp(strip, -1.0, static_cast<double>(GraphicsGrid::kMaxRows)));
}

// Calls `run` with the first and the last number of each unbroken run of set places below `count`.
template <class IsSet, class Run> void forEachRun(int count, IsSet isSet, Run run)
{
    int first = -1;
    for (int place = 0; place <= count; ++place) {
        const bool set = place < count && isSet(place);
        if (set && first < 0)
            first = place;
        if (!set && first >= 0)
            run(std::exchange(first, -1), place - 1);
    }
}

} // namespace

size_t calcByteIndex(size_t row, size_t column)
{
    return (column >> 3) + row * 3;
}

GraphicsGrid::GraphicsGrid(const QByteArray& cells)
    : GraphicsBase(Grid)
    , gridMap(cells)
{
}

GraphicsGrid& GraphicsGrid::operator=(const GraphicsGrid& other)
{
    GraphicsBase::operator=(other);
    drawColor = other.drawColor;
    gridMap = other.gridMap;
    startRow = -1;
    startColumn = -1;
    rows = kRowSize;
    columns = kColumnSize;
    return *this;
}

bool GraphicsGrid::isCell(size_t row, size_t column) const
{
    const auto reaches = [](size_t place, int count, int limit) {
        return count >= 0 && place <= static_cast<size_t>(std::min(count, limit));
    };
    return reaches(row, rows, kMaxRows) && reaches(column, columns, kMaxColumns);
}

bool GraphicsGrid::containsCell(size_t row, size_t column) const
{
    const size_t byte = calcByteIndex(row, column);
    return isCell(row, column) && byte < static_cast<size_t>(gridMap.size()) &&
           (gridMap.at(static_cast<int>(byte)) & kBitsMask[column & 7]) != 0;
}

void GraphicsGrid::includeCell(size_t row, size_t column)
{
    if (!isCell(row, column))
        return;
    const int byte = static_cast<int>(calcByteIndex(row, column));
    if (byte >= gridMap.size())
        gridMap.append(QByteArray(byte + 1 - gridMap.size(), '\0'));
    gridMap[byte] = static_cast<char>(gridMap.at(byte) | kBitsMask[column & 7]);
}

void GraphicsGrid::excludeCell(size_t row, size_t column)
{
    if (!containsCell(row, column))
        return;
    const int byte = static_cast<int>(calcByteIndex(row, column));
    gridMap[byte] = static_cast<char>(gridMap.at(byte) & ~kBitsMask[column & 7]);
}

void GraphicsGrid::includeAll()
{
    for (int row = 0; row < std::min(rows, kMaxRows); ++row) {
        for (int column = 0; column < std::min(columns, kMaxColumns); ++column)
            includeCell(static_cast<size_t>(row), static_cast<size_t>(column));
    }
}

void GraphicsGrid::mouseDown(const QPointF& position, const QSize&)
{
    startRow = stripOf(position.y(), rows);
    startColumn = stripOf(position.x(), columns);
}

// Cells left of or above the window have no number.
void GraphicsGrid::mouseMove(const QPointF&, const QPointF& current, const QSize&)
{
    if (startRow == -1)
        return;
    const auto [top, bottom] = std::minmax({startRow, stripOf(current.y(), rows)});
    const auto [left, right] = std::minmax({startColumn, stripOf(current.x(), columns)});
    for (int row = std::max(0, top); row <= bottom; ++row) {
        for (int column = std::max(0, left); column <= right; ++column)
            includeCell(static_cast<size_t>(row), static_cast<size_t>(column));
    }
}

void GraphicsGrid::mouseUp(const QPointF&, const QSize&)
{
    startRow = -1;
}

int GraphicsGrid::mappedRows() const
{
    return std::min({rows, kMaxRows, gridMap.size() / 3 + 1});
}

int GraphicsGrid::mappedColumns(int row) const
{
    return std::min({columns, kMaxColumns, (gridMap.size() - row * 3) * 8});
}

// In single precision.
QRectF GraphicsGrid::cellRect(int row, int column) const
{
    const auto allColumns = static_cast<float>(columns);
    const auto allRows = static_cast<float>(rows);
    return {static_cast<float>(column) / allColumns, static_cast<float>(row) / allRows, 1.0F / allColumns,
            1.0F / allRows};
}

void GraphicsGrid::render(void*, const QSize& size)
{
    const DrawColor color(drawColor);
    if (strokesBlend())
        renderCells(color, size);
    else
        renderRuns(color, size);
}

void GraphicsGrid::renderCells(const DrawColor& color, const QSize& size) const
{
    for (int row = 0; row < mappedRows(); ++row) {
        for (int column = 0; column < mappedColumns(row); ++column) {
            if (containsCell(static_cast<size_t>(row), static_cast<size_t>(column)))
                renderRectangle(color, cellRect(row, column), size, false);
        }
    }
}

// The pixels of renderCells for a fraction of the strokes: neighbours' sides that lie in one line are one stroke. Each
// keeps the way that it has around its cell, which decides on the pixel at its end.
void GraphicsGrid::renderRuns(const DrawColor& color, const QSize& size) const
{
    const auto isSet = [&](int row, int column) {
        return containsCell(static_cast<size_t>(row), static_cast<size_t>(column));
    };
    const int shownRows = mappedRows();
    const int shownColumns = shownRows > 0 ? mappedColumns(0) : 0;
    for (int row = 0; row < shownRows; ++row) {
        forEachRun(
            shownColumns, [&](int column) { return isSet(row, column); },
            [&](int first, int last) {
                const QRectF left = cellRect(row, first);
                const QRectF right = cellRect(row, last);
                renderLine(color, left.bottomLeft(), right.bottomRight(), size, 1);
                renderLine(color, right.topRight(), left.topLeft(), size, 1);
            });
    }
    for (int column = 0; column < shownColumns; ++column) {
        forEachRun(
            shownRows, [&](int row) { return isSet(row, column); },
            [&](int first, int last) {
                const QRectF top = cellRect(first, column);
                const QRectF bottom = cellRect(last, column);
                renderLine(color, bottom.bottomRight(), top.topRight(), size, 1);
                renderLine(color, top.topLeft(), bottom.bottomLeft(), size, 1);
            });
    }
}

QJsonObject GraphicsGrid::toJson() const
{
    return {{"gridMap", QString::fromLatin1(gridMap.toHex())}, {"gridColNum", columns}, {"gridRowNum", rows}};
}

ParsedGraphics parseGrid(const QJsonObject& object)
{
    const QString cells = parseOptional<QString>(object, "gridMap", QString()).second;
    const auto grid = std::make_shared<GraphicsGrid>(QByteArray::fromHex(cells.toUtf8()));
    readColor(object, "drawColor", grid->drawColor);
    const auto [columnError, columns] = parseRequired<int>(object, "gridColNum");
    if (columnError)
        return {columnError, nullptr};
    const auto [rowError, rows] = parseRequired<int>(object, "gridRowNum");
    if (rowError)
        return {rowError, nullptr};
    grid->columns = columns.toInt();
    grid->rows = rows.toInt();
    return {nullptr, grid};
}

} // namespace quillmark::lumen_deck
