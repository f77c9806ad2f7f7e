#pragma once

#include "src/Cell.h"
#include "src/util/Errors.h"

#include <QList>
#include <QVariant>
#include <QWidget>

#include <memory>
#include <utility>

class QMouseEvent;

namespace quillmark::lumen_deck {

class CellStack;
class CellWidget;
class CustomLayout;
class IPlayWindow;

// The keys of a cell in the layout document.
constexpr const char* kColSpanKey = "colspan";
constexpr const char* kRowSpanKey = "rowspan";
constexpr const char* kBorderColorKey = "border_color";
constexpr const char* kBackgroundKey = "background_color";
constexpr const char* kNameKey = "name";
constexpr const char* kWindowReferenceKey = "wndIndex";
constexpr const char* kCellLayoutKey = "ratio";
constexpr const char* kCellLayoutLeft = "left";
constexpr const char* kCellLayoutTop = "top";
constexpr const char* kCellLayoutWidth = "width";
constexpr const char* kCellLayoutHeight = "height";
constexpr const char* kCellLayoutLayer = "layer";
constexpr const char* kCellLayoutDrag = "dragable";
constexpr const char* kDefaultBorderColor = "#ffcc00";
constexpr const char* kDefaultBackgroundColor = "#343434";

// The layout document. Nothing here touches a widget.
std::pair<std::shared_ptr<ErrorBase>, int> retrieve_col_row_span(const QJsonObject& object, const QString& key);
std::pair<std::shared_ptr<ErrorBase>, std::shared_ptr<Cell>> construct_layout_cell(const QJsonObject& object);
std::pair<std::shared_ptr<ErrorBase>, std::shared_ptr<QList<Cell>>> construct_layout_table(const QJsonArray& array);

// A view on the windows of one main widget, built on the stack wherever it is needed; all state hangs on the widget. A
// reference names a window by its index (0 to 15) or by the name of its cell; one that finds nothing is no error here.
// On a null widget, or one that has a layout of another class, there are no windows. Main thread.
class Layout
{
public:
    explicit Layout(QWidget* mainWindow);

    int size() const; // without the spare cells
    int indexOf(CellWidget* cell) const;
    int indexOf(IPlayWindow* window) const;
    CellWidget* getCell(QVariant reference) const;

    void hide(QVariant reference);
    void show(QVariant reference);
    bool isHidden(QVariant reference) const;

    IPlayWindow* getPlayWindow(QVariant reference) const;
    IPlayWindow* getSelectedPlayWindow() const;   // null when there is no cell
    QList<IPlayWindow*> getAllPlayWindow() const; // of the spare cells only, the next to come back first
    void selectPlayWindow(QVariant reference);

    void setWndRatioMode(QVariant reference, int mode); // counts from the cell's next resize on, as the next one
    void setWndResolution(QVariant reference, int width, int height);

    // Windows whose reference stands in the document stay, with their streams and shapes; the others become spares.
    std::shared_ptr<ErrorBase> setLayout(const QJsonDocument& document);

private:
    using Placement = QList<std::pair<CellWidget*, Cell>>;

    CellWidget* cellAt(int index) const;
    Placement match(const QList<Cell>& table) const;
    void dismantle(const Placement& kept);
    void build(const Placement& placement);
    void select(int index);

    QWidget* mainWindow_;
    CustomLayout* layout_ = nullptr;
    CellStack* stack_ = nullptr;
};

void onCellMousePress(QMouseEvent* event, CellWidget* target);
void onCellMouseDrag(QPointF* delta, CellWidget* target);

} // namespace quillmark::lumen_deck
