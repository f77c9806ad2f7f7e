#include "src/LayoutManager.h"
#include "tests/support/Documents.h"

#include <QJsonArray>

#include <gtest/gtest.h>

using namespace quillmark::lumen_deck;
using namespace documents;

namespace {

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
