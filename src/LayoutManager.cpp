#include "src/LayoutManager.h"

#include "src/CustomLayout.h"
#include "src/LayoutDetail.h"
#include "src/WindowDirectory.h"
#include "src/util/JsonUtil.h"

#include <QDebug>
#include <QMouseEvent>
#include <QPointer>
#include <QSet>
#include <QUuid>

#include <tuple>

namespace quillmark::lumen_deck {

namespace {

constexpr int kLargestSpan = 16;
constexpr unsigned kLargestIndex = 15; // that a reference can name
// Each cell is two windows of the X server, and Qt's time for them grows with the square of their number.
constexpr int kMostCells = 1024;

bool isRatioMode(int mode)
{
    return mode >= 1 && mode <= 4;
}

// Reads field after field; the first error stays and ends the reading.
class CellReader
{
public:
    explicit CellReader(const QJsonObject& object)
        : object_(object)
    {
    }

    std::shared_ptr<ErrorBase> error;

    // What stands in the field is its default.
    template <class T> void read(const char* key, T& field)
    {
        if (!error)
            std::tie(error, field) = parseOptional<T>(object_, key, field);
    }
    void readSpan(const char* key, int& field)
    {
        if (!error)
            std::tie(error, field) = retrieve_col_row_span(object_, key);
    }
    void readReference(const char* key, QVariant& field)
    {
        if (!error)
            std::tie(error, field) = parseReference<QVariant>(object_, key);
    }

private:
    const QJsonObject& object_;
};

std::shared_ptr<ErrorBase> notAnArray(const QJsonDocument& document)
{
    return constructJsonError("error setting layout, layout json document should be an array", document, LUMEN_HERE);
}

std::pair<std::shared_ptr<ErrorBase>, std::shared_ptr<QList<Cell>>> tableOf(const QJsonDocument& document)
{
    if (document.isArray())
        return construct_layout_table(document.array());
    if (document.isObject())
        return construct_layout_table(document.object().value("windows").toArray());
    return {notAnArray(document), nullptr};
}

void setPlace(const CellWidget* cell, QWidget* mainWindow, int index)
{
    WindowDirectory::instance().setPlace(cell->playWindow(), {mainWindow, index});
}

// A cell comes here at every layout that it is part of, and is connected once.
void connectMouse(CellWidget* cell)
{
    QObject::disconnect(cell, &CellWidget::sigMousePress, cell, nullptr);
    QObject::disconnect(cell, &CellWidget::sigMousedrag, cell, nullptr);
    QObject::connect(cell, &CellWidget::sigMousePress, cell, &onCellMousePress, Qt::DirectConnection);
    QObject::connect(cell, &CellWidget::sigMousedrag, cell, &onCellMouseDrag, Qt::DirectConnection);
}

void dress(CellWidget* widget, const Cell& cell)
{
    widget->setObjectName(cell.name);
    widget->setBorderColor(cell.borderColor);
    widget->setBackgroundColor(QVariant(cell.backgroundColor));
    widget->setRatioMode(cell.ratio);
}

} // namespace

std::pair<std::shared_ptr<ErrorBase>, int> retrieve_col_row_span(const QJsonObject& object, const QString& key)
{
    const auto [error, span] = parseOptional<int>(object, key, 1);
    if (error)
        return {error, 0};
    if (span < 1) {
        qWarning("after static cast, %s is less than 1; ", qUtf8Printable(key));
        return {nullptr, 1};
    }
    if (span > kLargestSpan) {
        qWarning("after static cast, %s is greater than %d; ", qUtf8Printable(key), kLargestSpan);
        return {nullptr, kLargestSpan};
    }
    return {nullptr, span};
}

std::pair<std::shared_ptr<ErrorBase>, std::shared_ptr<Cell>> construct_layout_cell(const QJsonObject& object)
{
    auto cell = std::make_shared<Cell>();
    cell->borderColor = parseColorFromString(kDefaultBorderColor).value<QColor>();
    cell->backgroundColor = parseColorFromString(kDefaultBackgroundColor).value<QColor>();
    cell->name = QUuid::createUuid().toString();

    CellReader reader(object);
    reader.readSpan(kColSpanKey, cell->colSpan);
    reader.readSpan(kRowSpanKey, cell->rowSpan);
    reader.read(kBorderColorKey, cell->borderColor);
    reader.read(kBackgroundKey, cell->backgroundColor);
    reader.read(kNameKey, cell->name);
    reader.readReference(kWindowReferenceKey, cell->reference);
    reader.read(kCellLayoutKey, cell->ratio);
    reader.read(kCellLayoutLeft, cell->left);
    reader.read(kCellLayoutTop, cell->top);
    reader.read(kCellLayoutWidth, cell->width);
    reader.read(kCellLayoutHeight, cell->height);
    reader.read(kCellLayoutLayer, cell->layer);
    reader.read(kCellLayoutDrag, cell->dragable);
    if (reader.error)
        return {reader.error, nullptr};
    if (!isRatioMode(cell->ratio))
        cell->ratio = 0;
    return {nullptr, cell};
}

std::pair<std::shared_ptr<ErrorBase>, std::shared_ptr<QList<Cell>>> construct_layout_table(const QJsonArray& array)
{
    if (array.size() > kMostCells)
        return {constructJsonError(QString("error setting layout, more than %1 cells").arg(kMostCells),
                                   QJsonObject{{"cells", array.size()}}, LUMEN_HERE),
                nullptr};
    auto table = std::make_shared<QList<Cell>>();
    for (int i = 0; i < array.size(); ++i) {
        if (!array[i].isObject())
            return {constructJsonError("error setting layout, layout should be a one-demension array of object "
                                       "describing the layout",
                                       array, LUMEN_HERE),
                    nullptr};
        QJsonObject object = array[i].toObject();
        if (!object.contains(kWindowReferenceKey))
            object.insert(kWindowReferenceKey, i);
        const auto [error, cell] = construct_layout_cell(object);
        if (error)
            return {error, nullptr};
        table->append(*cell);
    }
    return {nullptr, table};
}

Layout::Layout(QWidget* mainWindow)
    : mainWindow_(mainWindow)
{
    if (!mainWindow)
        return;
    if (!mainWindow->layout()) {
        new CustomLayout(mainWindow, -1, -1, -1);
        new CellStack(mainWindow);
    }
    layout_ = qobject_cast<CustomLayout*>(mainWindow->layout());
    stack_ = mainWindow->findChild<CellStack*>(QString(), Qt::FindDirectChildrenOnly);
}

int Layout::size() const
{
    return layout_ ? layout_->count() : 0;
}

int Layout::indexOf(CellWidget* cell) const
{
    return layout_ && cell ? layout_->indexOf(cell) : -1;
}

int Layout::indexOf(IPlayWindow* window) const
{
    return window ? indexOf(qobject_cast<CellWidget*>(window->parentWidget())) : -1;
}

CellWidget* Layout::cellAt(int index) const
{
    return qobject_cast<CellWidget*>(layout_->itemAt(index)->widget());
}

CellWidget* Layout::getCell(QVariant reference) const
{
    if (!layout_ || reference.isNull())
        return nullptr;
    if (reference.type() == QVariant::String)
        return mainWindow_->findChild<CellWidget*>(reference.toString(), Qt::FindDirectChildrenOnly);
    const int index = reference.toInt();
    if (static_cast<unsigned>(index) > kLargestIndex || index >= size())
        return nullptr;
    return cellAt(index);
}

void Layout::hide(QVariant reference)
{
    if (CellWidget* cell = getCell(reference))
        cell->hide();
}

void Layout::show(QVariant reference)
{
    CellWidget* cell = getCell(reference);
    if (!cell)
        return;
    if (!cell->testAttribute(Qt::WA_Mapped))
        cell->setAttribute(Qt::WA_Mapped);
    cell->show();
}

bool Layout::isHidden(QVariant reference) const
{
    const CellWidget* cell = getCell(reference);
    return cell && cell->isHidden();
}

IPlayWindow* Layout::getPlayWindow(QVariant reference) const
{
    const CellWidget* cell = getCell(reference);
    return cell ? cell->playWindow() : nullptr;
}

IPlayWindow* Layout::getSelectedPlayWindow() const
{
    for (int i = 0; i < size(); ++i) {
        if (cellAt(i)->isSelected())
            return cellAt(i)->playWindow();
    }
    return nullptr;
}

QList<IPlayWindow*> Layout::getAllPlayWindow() const
{
    QList<IPlayWindow*> windows;
    if (!stack_)
        return windows;
    for (const CellWidget* cell : stack_->cells())
        windows.append(cell->playWindow());
    return windows;
}

void Layout::selectPlayWindow(QVariant reference)
{
    if (reference.isNull())
        return;
    if (reference.type() == QVariant::String)
        select(indexOf(getCell(reference)));
    else
        select(reference.toInt());
}

// The selected one comes last: it tells the host, who may call for another layout at once.
void Layout::select(int index)
{
    if (index < 0 || index >= size())
        return;
    for (int i = 0; i < size(); ++i) {
        if (i != index)
            cellAt(i)->unselect();
    }
    cellAt(index)->select();
}

void Layout::setWndRatioMode(QVariant reference, int mode)
{
    if (CellWidget* cell = getCell(reference))
        cell->setRatioMode(isRatioMode(mode) ? mode : 0);
}

void Layout::setWndResolution(QVariant reference, int width, int height)
{
    if (CellWidget* cell = getCell(reference))
        cell->setResolution(width, height);
}

std::shared_ptr<ErrorBase> Layout::setLayout(const QJsonDocument& document)
{
    const auto [error, table] = tableOf(document);
    if (error)
        return error;
    if (!layout_)
        return std::make_shared<InvalidStatusError>("the main widget has a layout of another class", LUMEN_HERE);

    const QPointer<QWidget> mainWindow = mainWindow_;
    const Placement placement = match(*table);
    layout_->setEnabled(false); // one geometry pass at the end, instead of one for each cell that is shown
    dismantle(placement);
    build(placement);
    layout_->setEnabled(true);
    select(0);
    if (mainWindow) // the host, told of the selection, may have deleted it
        mainWindow->resize(mainWindow->width() + 1, mainWindow->height());
    return nullptr;
}

// The old layout is unchanged while the entries look for their windows in it. Of two entries that name one window the
// first takes it.
Layout::Placement Layout::match(const QList<Cell>& table) const
{
    Placement placement;
    QSet<CellWidget*> taken;
    for (const Cell& cell : table) {
        CellWidget* widget = getCell(cell.reference);
        if (!widget || taken.contains(widget))
            widget = stack_->pop();
        taken.insert(widget);
        placement.append({widget, cell});
    }
    return placement;
}

void Layout::dismantle(const Placement& kept)
{
    QSet<QWidget*> stays;
    for (const auto& [widget, cell] : kept)
        stays.insert(widget);
    for (int i = size() - 1; i >= 0; --i) {
        CellWidget* widget = cellAt(i);
        const std::unique_ptr<QLayoutItem> item(layout_->itemAt(i));
        layout_->removeItem(item.get());
        if (!stays.contains(widget)) {
            stack_->push(widget);
            setPlace(widget, mainWindow_, -1);
        }
        widget->setParent(nullptr);
    }
}

void Layout::build(const Placement& placement)
{
    for (const auto& [widget, cell] : placement) {
        dress(widget, cell);
        layout_->addWidget(widget, cell);
        setPlace(widget, mainWindow_, size() - 1);
        connectMouse(widget);
        widget->show();
    }
}

void onCellMousePress(QMouseEvent* event, CellWidget* target)
{
    if (event->button() != Qt::LeftButton)
        return;
    Layout layout(target->parentWidget());
    layout.selectPlayWindow(QVariant(layout.indexOf(target)));
}

void onCellMouseDrag(QPointF* delta, CellWidget* target)
{
    QWidget* mainWindow = target->parentWidget();
    if (auto* layout = mainWindow ? qobject_cast<CustomLayout*>(mainWindow->layout()) : nullptr)
        layout->updateWidget(delta, layout->indexOf(target), mainWindow->geometry());
}

} // namespace quillmark::lumen_deck
