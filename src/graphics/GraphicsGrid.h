#pragma once

#include "src/graphics/GraphicsBase.h"

#include <QByteArray>

namespace quillmark::lumen_deck {

// A map of cells over the whole window, painted with the mouse. Three bytes a row, column 0 in a byte's highest bit.
class GraphicsGrid : public GraphicsBase
{
    Q_OBJECT
public:
    static constexpr int kRowSize = 18;
    static constexpr int kColumnSize = 22;
    // The packing suits 24 columns; further cells than these are neither set nor drawn, whatever a host asks for, so
    // that no document costs the wall its frames.
    static constexpr int kMaxRows = 1024;
    static constexpr int kMaxColumns = 256;

    explicit GraphicsGrid(const QByteArray& cells);

    using GraphicsBase::operator=;
    virtual GraphicsGrid& operator=(const GraphicsGrid& other);
    void mouseMove(const QPointF& previous, const QPointF& current, const QSize& size) override;
    void mouseDown(const QPointF& position, const QSize& size) override;
    void mouseUp(const QPointF& position, const QSize& size) override;
    void render(void* drawContext, const QSize& size) override;
    bool contains(const QPointF&, const QSize&) const override { return true; }
    int distance(const QPointF&, const QSize&) const override { return 0; }
    QJsonObject toJson() const override;

    // The row number `rows` and the column number `columns`, one past the last, count as cells here.
    bool containsCell(size_t row, size_t column) const;
    void includeCell(size_t row, size_t column);
    void excludeCell(size_t row, size_t column);
    void includeAll();

    QByteArray gridMap; // may be shorter or longer than the cells on screen; what is missing is clear
    QColor drawColor = Qt::red;
    int startRow = -1; // the cell of the current press
    int startColumn = -1;
    int rows = kRowSize;
    int columns = kColumnSize;

private:
    int mappedRows() const; // from here on no cell is set
    int mappedColumns(int row) const;
    QRectF cellRect(int row, int column) const;
    void renderCells(const DrawColor& color, const QSize& size) const;
    void renderRuns(const DrawColor& color, const QSize& size) const;
    bool isCell(size_t row, size_t column) const;
};

size_t calcByteIndex(size_t row, size_t column);
ParsedGraphics parseGrid(const QJsonObject& object);

} // namespace quillmark::lumen_deck
