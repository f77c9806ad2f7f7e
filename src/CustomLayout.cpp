#include "src/CustomLayout.h"

#include <QDebug>
#include <QWidget>

#include <algorithm>
#include <cmath>

namespace quillmark::lumen_deck {

namespace {

// Truncated towards zero; fractions without measure end at the largest widget there can be.
int pixels(double fraction, int extent)
{
    const double exact = fraction * extent;
    if (std::isnan(exact))
        return 0;
    constexpr double limit = QWIDGETSIZE_MAX;
    return static_cast<int>(std::clamp(exact, -limit, limit));
}

QRect placeOf(const Cell& cell, QSize area)
{
    return {pixels(cell.left, area.width()), pixels(cell.top, area.height()), pixels(cell.width, area.width()),
            pixels(cell.height, area.height())};
}

bool isTailOf(const QObjectList& children, const QList<QWidget*>& widgets)
{
    return children.size() >= widgets.size() &&
           std::equal(widgets.rbegin(), widgets.rend(), children.rbegin(),
                      [](const QWidget* widget, const QObject* child) { return widget == child; });
}

} // namespace

CustomLayout::CustomLayout(QWidget* parent, int /*margin*/, int /*hSpacing*/, int /*vSpacing*/)
    : QLayout(parent)
{
}

CustomLayout::~CustomLayout()
{
    cells_.clear();
    while (QLayoutItem* item = takeAt(0))
        delete item;
}

// The widget has its place before it is shown: it would flash at another one.
void CustomLayout::addWidget(QWidget* widget, Cell cell)
{
    addChildWidget(widget);
    widget->setGeometry(placeOf(cell, parentWidget()->size()));
    cells_.append(std::move(cell));
    items_.append(new QWidgetItem(widget));
    invalidate();
}

void CustomLayout::addItem(QLayoutItem* item)
{
    items_.append(item);
    cells_.append(Cell());
}

void CustomLayout::removeItem(QLayoutItem* item)
{
    const int index = items_.lastIndexOf(item);
    if (index < 0)
        return;
    items_.removeAt(index);
    cells_.removeAt(index);
}

int CustomLayout::count() const
{
    return items_.size();
}

QLayoutItem* CustomLayout::itemAt(int index) const
{
    return items_.value(index, nullptr);
}

QLayoutItem* CustomLayout::takeAt(int index)
{
    return index >= 0 && index < items_.size() ? items_.takeAt(index) : nullptr;
}

QSize CustomLayout::sizeHint() const
{
    return {100, 100};
}

void CustomLayout::setGeometry(const QRect& rect)
{
    QLayout::setGeometry(rect);
    doLayout(rect);
}

int CustomLayout::doLayout(const QRect& rect) const
{
    int hidden = 0;
    int visibleIndex = -1;
    for (int i = 0; i < items_.size(); ++i) {
        items_[i]->setGeometry(placeOf(cells_[i], rect.size()));
        if (items_[i]->widget()->isHidden())
            ++hidden;
        else
            visibleIndex = i;
    }
    raiseFrontLayer();
    qDebug() << "iHideWindows:" << hidden << "showWindowIndex:" << visibleIndex;
    if (count() - hidden == 1) {
        const QPoint corner(rect.right() - rect.left(), rect.bottom() - rect.top());
        items_[visibleIndex]->setGeometry(QRect(QPoint(0, 0), corner));
    }
    return 0;
}

// Raising is costly with many cells, and nearly always they lie as they should.
void CustomLayout::raiseFrontLayer() const
{
    QList<QWidget*> front;
    for (int i = 0; i < items_.size(); ++i) {
        if (cells_[i].layer == 0)
            front.append(items_[i]->widget());
    }
    if (isTailOf(parentWidget()->children(), front))
        return;
    for (QWidget* widget : front)
        widget->raise();
}

// A step over an edge is dropped whole. The bounds are said so that a step that is no number fails them.
void CustomLayout::updateWidget(QPointF* delta, int index, QRect /*area*/)
{
    if (index < 0 || index >= cells_.size() || !cells_[index].dragable)
        return;
    Cell& cell = cells_[index];
    const double top = cell.top + delta->y();
    const double left = cell.left + delta->x();
    if (!(top >= 0.0 && left >= 0.0 && top + cell.height <= 1.0 && left + cell.width <= 1.0))
        return;
    cell.top = top;
    cell.left = left;
    doLayout(geometry());
}

} // namespace quillmark::lumen_deck
