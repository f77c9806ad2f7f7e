#pragma once

#include "src/Cell.h"

#include <QLayout>
#include <QList>

namespace quillmark::lumen_deck {

// The layout of a main widget: each cell at its fractions, a single visible cell over the whole area. Owns its items,
// as every QLayout does, and never the widgets. Main thread.
class CustomLayout : public QLayout
{
    Q_OBJECT
public:
    CustomLayout(QWidget* parent, int margin, int hSpacing, int vSpacing); // there are no margins and no spacing
    ~CustomLayout() override;

    void addWidget(QWidget* widget, Cell cell);
    void removeItem(QLayoutItem* item); // the item stays alive and is the caller's
    void updateWidget(QPointF* delta, int index, QRect area);
    int doLayout(const QRect& rect) const;

    void addItem(QLayoutItem* item) override;
    void setGeometry(const QRect& rect) override;
    QLayoutItem* itemAt(int index) const override;
    QLayoutItem* takeAt(int index) override;
    int count() const override;
    QSize sizeHint() const override;

private:
    void raiseFrontLayer() const;

    QList<QLayoutItem*> items_;
    QList<Cell> cells_; // one for each item, at the same position
};

} // namespace quillmark::lumen_deck
