#include "host/window/panels/DrawingPanel.h"

#include "host/window/Actions.h"

#include <QFormLayout>
#include <QJsonArray>
#include <QJsonDocument>
#include <QVBoxLayout>

namespace quillmark::lumen_wall {

namespace {

constexpr int kPollMs = 400;
constexpr const char* kColours[] = {"#ff4d4d", "#f0b429", "#3ddc84", "#3d8bfd", "#d16bff", "#ffffff"};

QJsonObject overlay(double x, double y, QJsonObject content)
{
    content["enable"] = true;
    content["point"] = QJsonArray{x, y};
    return content;
}

} // namespace

const DrawingPanel::Row DrawingPanel::kTools[] = {
    {"select", "Select and move shapes", "V", &DrawingPanel::select},
    {"rectangle", "Draw rectangles", "", &DrawingPanel::drawRectangle},
    {"polygon", "Draw polygons; a right click ends one", "", &DrawingPanel::drawPolygon},
    {"line", "Draw lines; a right click ends one", "", &DrawingPanel::drawLine},
    {"point", "Set a point", "", &DrawingPanel::drawPoint},
    {"cells", "Paint cells of a grid", "", &DrawingPanel::paintCells},
    {"zoom-frame", "Zoom into a frame; drag to the left top to leave", "Z", &DrawingPanel::zoomByFrame},
    {"zoom-drag", "Zoom with the wheel, pan by dragging", "Shift+Z", &DrawingPanel::zoomByDrag},
};

const DrawingPanel::Row DrawingPanel::kErasers[] = {
    {"delete", "Delete the selected shape", "Del", &DrawingPanel::removeSelected},
    {"clear", "Clear this window", "", &DrawingPanel::clearWindow},
    {"clear-all", "Clear all windows", "", &DrawingPanel::clearWall},
};

DrawingPanel::DrawingPanel(Operator& wall, QWidget* parent)
    : QWidget(parent)
    , deck_(wall.deck())
    , tools_(this)
    , colour_(kColours[0])
    , fill_(new QCheckBox("Fill"))
    , mostShapes_(new QSpinBox)
    , mostPoints_(new QSpinBox)
    , name_(new QLineEdit)
    , date_(new QCheckBox("Date and time"))
    , text_(new QLineEdit)
    , documents_(new QPlainTextEdit)
{
    auto* column = new QVBoxLayout(this);
    column->addLayout(buttonLine(kTools, std::size(kTools), &tools_));
    column->addWidget(colours());
    auto* form = new QFormLayout;
    addLimits(*form);
    addTexts(*form);
    column->addLayout(form);
    column->addLayout(buttonLine(kErasers, std::size(kErasers), nullptr));
    documents_->setReadOnly(true);
    documents_->setObjectName("documents");
    documents_->setPlaceholderText("The shapes of the selected window");
    column->addWidget(documents_, 1);
    tools_.actions().constFirst()->setChecked(true);

    connect(&deck_, &Deck::selectionChanged, this, [this] { moveTo(deck_.selected()); });
    connect(&poll_, &QTimer::timeout, this, &DrawingPanel::showShapes);
}

QBoxLayout* DrawingPanel::buttonLine(const Row* rows, size_t count, QActionGroup* group)
{
    auto* line = new QHBoxLayout;
    line->setSpacing(1);
    for (size_t i = 0; i < count; ++i) {
        QAction* const action = makeAction(this, rows[i].icon, rows[i].tip, rows[i].keys);
        action->setCheckable(group != nullptr);
        action->setActionGroup(group);
        connect(action, &QAction::triggered, this, [this, verb = rows[i].verb, group] {
            (this->*verb)();
            if (group)
                tool_ = verb;
        });
        auto* button = new QToolButton;
        button->setDefaultAction(action);
        line->addWidget(button);
        addAction(action);
    }
    line->addStretch();
    return line;
}

QWidget* DrawingPanel::colours()
{
    auto* row = new QWidget;
    auto* line = new QHBoxLayout(row);
    line->setContentsMargins({});
    auto* group = new QActionGroup(row);
    for (const char* const colour : kColours) {
        QPixmap swatch(16, 16);
        swatch.fill(QColor(colour));
        auto* action = new QAction(swatch, QString("Draw in %1").arg(colour), group);
        action->setCheckable(true);
        action->setChecked(colour_ == colour);
        connect(action, &QAction::triggered, this, [this, colour] { pickColour(colour); });
        auto* button = new QToolButton;
        button->setDefaultAction(action);
        line->addWidget(button);
    }
    connect(fill_, &QCheckBox::toggled, this, &DrawingPanel::takeUpTool);
    line->addWidget(fill_);
    line->addStretch();
    return row;
}

void DrawingPanel::addLimits(QFormLayout& form)
{
    mostShapes_->setRange(1, 64);
    mostShapes_->setValue(8);
    mostPoints_->setRange(3, 20);
    mostPoints_->setValue(10);
    form.addRow("Shapes", mostShapes_);
    form.addRow("Points", mostPoints_);
    for (QSpinBox* const limit : {mostShapes_, mostPoints_})
        connect(limit, QOverload<int>::of(&QSpinBox::valueChanged), this, &DrawingPanel::takeUpTool);
}

void DrawingPanel::addTexts(QFormLayout& form)
{
    name_->setPlaceholderText("name of the camera");
    text_->setPlaceholderText("free text");
    form.addRow("Name", name_);
    form.addRow("Text", text_);
    form.addRow("", date_);
    for (QLineEdit* const edit : {name_, text_})
        connect(edit, &QLineEdit::editingFinished, this, &DrawingPanel::setTexts);
    connect(date_, &QCheckBox::toggled, this, &DrawingPanel::setTexts);
}

void DrawingPanel::showEvent(QShowEvent*)
{
    poll_.start(kPollMs);
    showShapes();
}

void DrawingPanel::hideEvent(QHideEvent*)
{
    poll_.stop();
}

// Without a tool shapes can be picked and dragged; leaving the zoom gives the whole picture back.
void DrawingPanel::select()
{
    deck_.call("LD_DisableEZoom");
}

void DrawingPanel::draw(const char* drawType)
{
    select();
    setDrawing(true, deck_.selected());
    QJsonObject tool{{"drawColor", colour_},
                     {"maxShapeSupport", mostShapes_->value()},
                     {"maxPointSupport", mostPoints_->value()},
                     {"replace", true}};
    if (fill_->isChecked())
        tool["fillColor"] = colour_;
    deck_.call("LD_SetDrawShapeInfo", {{"drawType", drawType}, {"drawInfo", tool}});
}

void DrawingPanel::paintCells()
{
    select();
    setDrawing(true, deck_.selected());
    if (deck_.call("LD_GetGridInfo").toObject().contains("gridInfo"))
        return;
    const QJsonObject grid{
        {"wndIndex", deck_.selected()}, {"drawColor", colour_}, {"gridColNum", 22}, {"gridRowNum", 18}};
    deck_.call("LD_SetGridInfo", {{"gridInfo", grid}});
}

void DrawingPanel::zoom(int type)
{
    deck_.call("LD_EnableEZoom", {{"type", type}});
}

void DrawingPanel::setDrawing(bool on, int window)
{
    deck_.call("LD_SetDrawStatus", {{"enable", on}, {"wndIndex", window}});
}

void DrawingPanel::removeSelected()
{
    deck_.call("LD_ClearShapeByType", {{"type", "choosed"}});
}

void DrawingPanel::clearWindow()
{
    deck_.call("LD_ClearGraphics");
}

void DrawingPanel::clearWall()
{
    deck_.call("LD_ClearShapeByType", {{"type", "allwindows"}});
}

void DrawingPanel::pickColour(const QString& colour)
{
    colour_ = colour;
    takeUpTool();
}

void DrawingPanel::takeUpTool()
{
    (this->*tool_)();
}

// A window that is left keeps its picture as it is, zoomed or not, and gets no more shapes.
void DrawingPanel::moveTo(int window)
{
    if (window == window_)
        return;
    if (tool_ != &DrawingPanel::select) {
        setDrawing(false, window_);
        takeUpTool();
    }
    window_ = window;
}

void DrawingPanel::setTexts()
{
    const int window = deck_.selected();
    QJsonObject info;
    if (!name_->text().isEmpty())
        info["channelName"] = overlay(0.03, 0.04, {{"name", name_->text()}, {"wndIndex", window}});
    if (date_->isChecked())
        info["date"] = overlay(0.03, 0.12, {{"timeFormat", "24hour"}, {"showWeekDay", true}, {"wndIndex", window}});
    if (!text_->text().isEmpty())
        info["text"] = QJsonArray{overlay(0.03, 0.88, {{"id", 1}, {"text", text_->text()}, {"wndIndex", window}})};
    deck_.call("LD_SetTextOverlay", {{"overlayInfo", info}});
}

void DrawingPanel::showShapes()
{
    QJsonObject shapes;
    for (const char* const query : {"LD_GetRectInfo", "LD_GetPolygonInfo", "LD_GetLineInfo", "LD_GetPointInfo",
                                    "LD_GetGridInfo", "LD_GetTextOverlay"}) {
        const QJsonObject answer = deck_.call(query).toObject();
        for (auto field = answer.begin(); field != answer.end(); ++field)
            shapes[field.key()] = field.value();
    }
    const QString text = QString::fromUtf8(QJsonDocument(shapes).toJson());
    if (text != documents_->toPlainText())
        documents_->setPlainText(text);
}

} // namespace quillmark::lumen_wall
