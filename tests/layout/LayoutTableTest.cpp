#include "src/LayoutManager.h"

#include <QJsonArray>

#include <gtest/gtest.h>

using namespace quillmark::lumen_deck;

namespace {

QJsonArray array(const char* text)
{
    return QJsonDocument::fromJson(text).array();
}

QList<Cell> cells(const char* text)
{
    const auto [error, table] = construct_layout_table(array(text));
    EXPECT_FALSE(error) << text;
    return table ? *table : QList<Cell>();
}

std::string errorOf(const char* text)
{
    const auto [error, table] = construct_layout_table(array(text));
    EXPECT_FALSE(table);
    return error ? error->toJson().object()["errorMessage"].toString().toStdString() : "";
}

TEST(LayoutTable, EveryKeyHasADefault)
{
    const QList<Cell> table = cells("[{},{}]");
    ASSERT_EQ(table.size(), 2);
    const Cell& cell = table[1];
    EXPECT_EQ(cell.borderColor, QColor("#ffcc00"));
    EXPECT_EQ(cell.backgroundColor, QColor("#343434"));
    EXPECT_EQ(cell.reference, QVariant(1));
    EXPECT_EQ(QRectF(cell.left, cell.top, cell.width, cell.height), QRectF(0, 0, 0, 0));
    EXPECT_EQ(cell.rowSpan * 10 + cell.colSpan, 11);
    EXPECT_EQ(cell.ratio, 0);
    EXPECT_EQ(cell.layer, 0);
    EXPECT_FALSE(cell.dragable);
    EXPECT_FALSE(cell.name.isEmpty());
    EXPECT_NE(cell.name, table[0].name);
    EXPECT_TRUE(cells("[]").isEmpty());
}

TEST(LayoutTable, EveryKeyIsRead)
{
    const Cell cell = cells(R"([{"colspan":2,"rowspan":3,"border_color":"red","background_color":"#010203","name":"n",
        "wndIndex":"left","ratio":4,"left":0.1,"top":0.2,"width":0.3,"height":0.4,"layer":5,"dragable":true}])")[0];
    EXPECT_EQ(cell.colSpan, 2);
    EXPECT_EQ(cell.rowSpan, 3);
    EXPECT_EQ(cell.borderColor, QColor(Qt::red));
    EXPECT_EQ(cell.backgroundColor, QColor(1, 2, 3));
    EXPECT_EQ(cell.name, "n");
    EXPECT_EQ(cell.reference, QVariant("left"));
    EXPECT_EQ(cell.ratio, 4);
    EXPECT_EQ(QRectF(cell.left, cell.top, cell.width, cell.height), QRectF(0.1, 0.2, 0.3, 0.4));
    EXPECT_EQ(cell.layer, 5);
    EXPECT_TRUE(cell.dragable);
}

TEST(LayoutTable, NumbersAreBroughtIntoTheirRange)
{
    const QList<Cell> table = cells(R"([{"colspan":40,"rowspan":0,"ratio":9,"wndIndex":1.5},
                                        {"colspan":"x","ratio":"x","layer":"x"},{"ratio":-1}])");
    EXPECT_EQ(table[0].colSpan, 16);
    EXPECT_EQ(table[0].rowSpan, 1);
    EXPECT_EQ(table[0].ratio, 0);
    EXPECT_EQ(table[0].reference, QVariant(0));
    EXPECT_EQ(table[1].colSpan, 1);
    EXPECT_EQ(table[1].ratio, 0);
    EXPECT_EQ(table[2].ratio, 0);
}

TEST(LayoutTable, TheFirstBadFieldIsTheError)
{
    EXPECT_EQ(errorOf("[1]"), "error setting layout, layout should be a one-demension array of object describing the "
                              "layout");
    EXPECT_EQ(errorOf(R"([{"left":"a"}])"), "error retrieving an optional field left, type mismatch, required type is "
                                            "double");
    EXPECT_EQ(errorOf(R"([{"border_color":"nocolor"}])"),
              "error retrieving an optional field border_color, type mismatch, required type is color");
    EXPECT_EQ(errorOf(R"([{"wndIndex":true}])"), "error parsing refence key wndIndex, type mismatch, type required is "
                                                 "int, std::size_t or QString");
    EXPECT_EQ(errorOf(R"([{},{"dragable":1,"top":[]},{"name":3}])"),
              "error retrieving an optional field top, type mismatch, required type is double");
}

} // namespace
