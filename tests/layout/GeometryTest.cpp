#include "src/CustomLayout.h"
#include "src/LayoutDetail.h"
#include "src/LayoutManager.h"
#include "tests/support/Documents.h"

#include <gtest/gtest.h>

#include <limits>

using namespace quillmark::lumen_deck;
using namespace documents;

namespace {

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

TEST(FitPlayWindow, FollowsTheRatioMode)
{
    const QSize none(0, 0);
    // The cell, its mode and resolution, and the window in it.
    const std::tuple<QSize, int, QSize, QRect> table[] = {
        {{102, 102}, 0, none, {1, 1, 100, 100}},        {{400, 200}, 1, none, {68, 1, 264, 198}},
        {{200, 400}, 1, none, {1, 126, 198, 148}},      {{400, 200}, 2, none, {24, 1, 352, 198}},
        {{200, 400}, 2, none, {1, 144, 198, 111}},      {{400, 202}, 3, {352, 288}, {78, 1, 244, 200}},
        {{102, 400}, 3, {704, 576}, {1, 159, 100, 81}}, {{400, 200}, 3, none, {1, 1, 398, 198}},
        {{400, 200}, 3, {-16, -9}, {1, 1, 398, 198}},   {{102, 402}, 3, {2147483647, 2147483647}, {1, 151, 100, 100}},
        {{202, 402}, 4, none, {1, 101, 200, 200}},      {{402, 202}, 4, none, {101, 1, 200, 200}},
    };
    for (const auto& [cell, mode, resolution, window] : table)
        EXPECT_EQ(fitPlayWindow(cell, mode, resolution), window) << mode << " in " << cell.width();
    for (int mode = 0; mode <= 4; ++mode)
        EXPECT_LE(fitPlayWindow({0, 0}, mode, {1, 1}).width(), 0) << mode;
    EXPECT_TRUE(fitPlayWindow({100, 100}, 5, none).isNull());
}

class CustomLayoutTest : public ::testing::Test
{
protected:
    using Rects = std::vector<QRect>;

    QWidget* add(double left, double top, double width, double height, int layer = 0, bool dragable = false)
    {
        auto* widget = new QWidget(&main_);
        layout_->addWidget(widget, {1, 1, {}, {}, {}, {}, width, height, top, left, layer, dragable});
        widget->show();
        return widget;
    }

    Rects rectsIn(int width, int height)
    {
        layout_->setGeometry({0, 0, width, height});
        Rects rects;
        for (int i = 0; i < layout_->count(); ++i)
            rects.push_back(layout_->itemAt(i)->widget()->geometry());
        return rects;
    }

    QRect afterDrag(int index, QPointF delta)
    {
        layout_->updateWidget(&delta, index, {});
        return layout_->itemAt(index)->widget()->geometry();
    }

    QWidget main_;
    CustomLayout* layout_ = new CustomLayout(&main_, -1, -1, -1);
};

TEST_F(CustomLayoutTest, EachEdgeIsTruncatedByItself)
{
    add(0, 0, 1.0 / 3, 1);
    add(1.0 / 3, 0, 1.0 / 3, 1);
    add(2.0 / 3, 0, 1.0 / 3, 0.5);
    EXPECT_EQ(rectsIn(100, 51), (Rects{{0, 0, 33, 51}, {33, 0, 33, 51}, {66, 0, 33, 25}}));
    EXPECT_EQ(rectsIn(101, 9)[1], QRect(33, 0, 33, 9));
    EXPECT_EQ(layout_->sizeHint(), QSize(100, 100));
}

TEST_F(CustomLayoutTest, FractionsHaveNoLimit)
{
    add(0.5, 0.25, 2, 0.5);
    add(1e300, 0.5, 1e18, 1e-300);
    add(nan, inf, inf, nan);
    EXPECT_EQ(rectsIn(100, 100), (Rects{{50, 25, 200, 50},
                                        {QWIDGETSIZE_MAX, 50, QWIDGETSIZE_MAX, 0},
                                        {0, QWIDGETSIZE_MAX, QWIDGETSIZE_MAX, 0}}));
    add(-1e300, -inf, -1, -1e300);
    EXPECT_TRUE(rectsIn(100, 100)[3].isEmpty());
}

TEST_F(CustomLayoutTest, CellsOfLayerZeroLieAboveTheOthersInListOrder)
{
    QWidget* front = add(0, 0, 1, 1, 0);
    QWidget* back = add(0, 0, 1, 1, 1);
    QWidget* top = add(0, 0, 1, 1, 0);
    rectsIn(10, 10);
    const auto order = [&] { return main_.findChildren<QWidget*>(); };
    EXPECT_EQ(order(), (QList<QWidget*>{back, front, top}));
    front->raise();
    rectsIn(10, 10);
    EXPECT_EQ(order(), (QList<QWidget*>{back, front, top}));
}

TEST_F(CustomLayoutTest, ADragStaysInsideOrIsDroppedWhole)
{
    add(0, 0.5, 0.25, 0.25, 0, true);
    add(0.5, 0.5, 0.25, 0.25, 0, false);
    rectsIn(100, 100);
    for (const QPointF delta : {QPointF(-0.01, 0.1), {0.1, -0.51}, {0.76, 0}, {0, 0.26}, {nan, 0}})
        EXPECT_EQ(afterDrag(0, delta), QRect(0, 50, 25, 25));
    EXPECT_EQ(afterDrag(0, {0.75, 0.25}), QRect(75, 75, 25, 25));
    EXPECT_EQ(afterDrag(1, {0.1, 0.1}), QRect(50, 50, 25, 25));
    QPointF delta(0.1, 0.1);
    layout_->updateWidget(&delta, -1, {});
    layout_->updateWidget(&delta, 2, {});
}

QList<Cell> cells(const char* text)
{
    const auto [error, table] = construct_layout_table(json(text).array());
    EXPECT_FALSE(error) << text;
    return table ? *table : QList<Cell>();
}

TEST(LayoutTable, EveryKeyIsReadAndBroughtIntoItsRange)
{
    const QList<Cell> table = cells(R"([{"colspan":2,"rowspan":3,"border_color":"red","background_color":"#010203",
        "name":"n","wndIndex":"left","ratio":4,"left":0.1,"top":0.2,"width":0.3,"height":0.4,"layer":5,"dragable":true},
        {}, {}, {"colspan":40,"rowspan":0,"ratio":1e30,"wndIndex":1.5},{"colspan":"x","ratio":"x","layer":"x"},
        {"ratio":-1}])");
    const Cell& cell = table[0];
    EXPECT_EQ(cell.reference, QVariant("left"));
    EXPECT_EQ(QRectF(cell.left, cell.top, cell.width, cell.height), QRectF(0.1, 0.2, 0.3, 0.4));
    EXPECT_EQ(cell.layer, 5);
    EXPECT_TRUE(!table[1].name.isEmpty() && table[1].name != table[2].name);
    EXPECT_EQ(table[1].reference, QVariant(1));
    EXPECT_EQ(table[3].reference, QVariant(0));
    const int spansAndRatios[][3] = {{2, 3, 4}, {1, 1, 0}, {1, 1, 0}, {16, 1, 0}, {1, 1, 0}, {1, 1, 0}};
    for (int i = 0; i < table.size(); ++i) {
        const int read[] = {table[i].colSpan, table[i].rowSpan, table[i].ratio};
        EXPECT_TRUE(std::equal(std::begin(read), std::end(read), spansAndRatios[i])) << i;
    }
}

TEST(LayoutTable, TheFirstBadFieldIsTheError)
{
    const std::pair<const char*, std::string> rows[] = {
        {"[1]", "error setting layout, layout should be a one-demension array of object describing the layout"},
        {R"([{"left":"a"}])", mismatch("left", "double")},
        {R"([{"border_color":"nocolor"}])", mismatch("border_color", "color")},
        {R"([{"border_color":7}])", mismatch("border_color", "color")},
        {R"([{"name":null}])", mismatch("name", "string")},
        {R"([{"dragable":1}])", mismatch("dragable", "bool")},
        {R"([{"wndIndex":true}])",
         "error parsing refence key wndIndex, type mismatch, type required is int, std::size_t or QString"},
        {R"([{},{"dragable":1,"top":[]},{"name":3}])", mismatch("top", "double")},
    };
    for (const auto& [text, message] : rows) {
        const auto [error, table] = construct_layout_table(json(text).array());
        EXPECT_FALSE(table);
        EXPECT_EQ(messageOf(error), message);
    }
}

} // namespace
