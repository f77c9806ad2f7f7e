#include "host/window/panels/FisheyePanel.h"

#include "host/window/Actions.h"
#include "host/window/panels/FisheyeIcons.h"

#include <QCoreApplication>
#include <QFile>
#include <QFormLayout>
#include <QGridLayout>
#include <QScrollArea>
#include <QVBoxLayout>

namespace quillmark::lumen_wall {

namespace {

constexpr int kRepeatMs = 25; // one step is small
constexpr int kRepeatAfterMs = 200;
constexpr int kColumns = 6;
constexpr int kPresetsHeight = 44; // at least, on a small screen
constexpr int kFourViews = 7;
constexpr int kFastest = 7;
constexpr const char* kMounts[] = {"wall", "floor", "ceiling"}; // in the order of the library's numbers

QString textOf(const FisheyePreset& preset)
{
    return QStringLiteral("%1  %2  %3  ·  %4 s")
        .arg(preset.x, 0, 'f', 2)
        .arg(preset.y, 0, 'f', 2)
        .arg(preset.z, 0, 'f', 2)
        .arg(preset.seconds);
}

QLabel* heading(const char* text)
{
    auto* label = new QLabel(text);
    label->setObjectName("heading");
    return label;
}

} // namespace

FisheyePanel::FisheyePanel(Operator& wall, QWidget* parent)
    : QWidget(parent)
    , operator_(wall)
    , fisheye_(wall.fisheye())
    , pages_(new QStackedWidget)
    , mounting_(new QComboBox)
    , arrangements_(new QButtonGroup(this))
    , show_(new QPushButton("Dewarp this window"))
    , sample_(new QPushButton("Sample"))
    , speed_(new QSlider(Qt::Horizontal))
    , scan_(new QPushButton("Scan"))
    , cruise_(new QPushButton("Cruise"))
    , presets_(new QListWidget)
    , dwell_(new QSpinBox)
    , number_(new QSpinBox)
    , boxes_(new QSpinBox)
    , url_(new QLineEdit)
    , user_(new QLineEdit)
    , password_(new QLineEdit)
    , listen_(new QPushButton("Listen"))
{
    auto* who = new QComboBox;
    who->addItems({"Dewarped here", "Dewarped by the device"});
    pages_->addWidget(here());
    pages_->addWidget(byDevice());
    auto* column = new QVBoxLayout(this);
    column->addWidget(who);
    column->addWidget(pages_, 1);

    connect(who, QOverload<int>::of(&QComboBox::currentIndexChanged), pages_, &QStackedWidget::setCurrentIndex);
    connect(&wall.deck().cells(), &CellBook::changed, this, &FisheyePanel::refresh);
    connect(&wall.deck(), &Deck::selectionChanged, this, &FisheyePanel::refresh);
    connect(&fisheye_, &Fisheye::presetsChanged, this, &FisheyePanel::fillPresets);
    fillPresets();
}

QWidget* FisheyePanel::here()
{
    mounting_->addItems({"On a wall", "On the floor", "On a ceiling"});
    connect(mounting_, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &FisheyePanel::showAgain);
    moves_ = new QWidget;
    auto* moves = new QVBoxLayout(moves_);
    moves->setContentsMargins({});
    moves->setSpacing(4);
    moves->addWidget(heading("Selected view"));
    moves->addLayout(pad());
    moves->addLayout(movements());
    moves->addWidget(heading("Presets"));
    moves->addWidget(presets_, 1);
    moves->addLayout(presetButtons());

    auto* page = new QWidget;
    auto* column = new QVBoxLayout(page);
    column->setContentsMargins({});
    auto* form = new QFormLayout;
    form->addRow("Camera", mounting_);
    column->addLayout(form);
    column->addWidget(arrangements());
    column->addLayout(sources());
    column->addWidget(moves_, 1);
    return page;
}

QWidget* FisheyePanel::arrangements()
{
    auto* box = new QWidget;
    auto* grid = new QGridLayout(box);
    grid->setContentsMargins({});
    grid->setSpacing(2);
    for (int type = 0; type < kArrangements; ++type) {
        auto* button = new QToolButton;
        button->setIcon(arrangementIcon(type));
        button->setIconSize({28, 28});
        button->setToolTip(arrangementName(type));
        button->setCheckable(true);
        arrangements_->addButton(button, type);
        grid->addWidget(button, type / kColumns, type % kColumns);
    }
    arrangements_->button(kFourViews)->setChecked(true);
    connect(arrangements_, &QButtonGroup::idClicked, this, &FisheyePanel::showAgain);
    return box;
}

QLayout* FisheyePanel::sources()
{
    show_->setToolTip("Dewarp what the selected window plays");
    sample_->setToolTip("Dewarp a film of a room, made with the program");
    connect(show_, &QPushButton::clicked, this, [this] { show(operator_.current().source, operator_.current().auth); });
    connect(sample_, &QPushButton::clicked, this, [this] { show(sample(), {}); });
    auto* line = new QHBoxLayout;
    line->addWidget(show_, 1);
    line->addWidget(sample_);
    return line;
}

QToolButton* FisheyePanel::padButton(const char* icon, const char* tip, int direction)
{
    auto* button = new QToolButton;
    button->setIcon(makeIcon(icon));
    button->setIconSize({20, 20});
    button->setToolTip(tip);
    button->setAutoRepeat(true);
    button->setAutoRepeatDelay(kRepeatAfterMs);
    button->setAutoRepeatInterval(kRepeatMs);
    connect(button, &QToolButton::clicked, this, [this, direction] { fisheye_.step(direction, speed_->value()); });
    return button;
}

QLayout* FisheyePanel::pad()
{
    struct Place
    {
        const char* icon;
        const char* tip;
        int direction, row, column;
    };
    constexpr Place kPlaces[] = {
        {"pad-up", "Look up", 0, 0, 1},       {"pad-down", "Look down", 1, 2, 1}, {"pad-left", "Look left", 2, 1, 0},
        {"pad-right", "Look right", 3, 1, 2}, {"zoom-in", "Closer", 4, 0, 4},     {"zoom-out", "Wider", 5, 2, 4},
    };
    auto* grid = new QGridLayout;
    grid->setSpacing(2);
    for (const Place& place : kPlaces)
        grid->addWidget(padButton(place.icon, place.tip, place.direction), place.row, place.column);
    grid->setColumnMinimumWidth(3, 16);
    speed_->setRange(1, kFastest);
    speed_->setValue(4);
    speed_->setToolTip("Speed of turning and scanning");
    grid->addWidget(new QLabel("Speed"), 0, 6);
    grid->addWidget(speed_, 1, 6);
    grid->setColumnMinimumWidth(5, 16);
    grid->setColumnStretch(6, 1);
    return grid;
}

QLayout* FisheyePanel::movements()
{
    scan_->setCheckable(true);
    cruise_->setCheckable(true);
    scan_->setToolTip("Let the view wander over the picture");
    cruise_->setToolTip("Go round the presets");
    connect(scan_, &QPushButton::clicked, this,
            [this](bool on) { scan_->setChecked(fisheye_.scan(on, speed_->value())); });
    connect(cruise_, &QPushButton::clicked, this, [this](bool on) { cruise_->setChecked(fisheye_.cruise(on)); });
    auto* line = new QHBoxLayout;
    line->addWidget(scan_, 1);
    line->addWidget(cruise_, 1);
    return line;
}

QLayout* FisheyePanel::presetButtons()
{
    auto* keep = new QPushButton("Keep");
    auto* drop = new QPushButton("Drop");
    keep->setToolTip("Keep where the selected view looks");
    drop->setToolTip("Forget the chosen preset");
    presets_->setMinimumHeight(kPresetsHeight);
    presets_->setToolTip("A double click turns the selected view there");
    dwell_->setRange(0, 3600);
    dwell_->setValue(5);
    dwell_->setSuffix(" s");
    dwell_->setToolTip("How long a cruise stays there");
    connect(keep, &QPushButton::clicked, this, [this] { fisheye_.keepPreset(dwell_->value()); });
    connect(drop, &QPushButton::clicked, this, [this] {
        if (presets_->currentRow() >= 0)
            fisheye_.dropPreset(static_cast<size_t>(presets_->currentRow()));
    });
    connect(presets_, &QListWidget::itemActivated, this,
            [this] { fisheye_.usePreset(static_cast<size_t>(presets_->currentRow())); });
    auto* line = new QHBoxLayout;
    line->addWidget(dwell_);
    line->addWidget(keep, 1);
    line->addWidget(drop, 1);
    return line;
}

QWidget* FisheyePanel::byDevice()
{
    auto* page = new QWidget;
    auto* column = new QVBoxLayout(page);
    column->setContentsMargins({});
    column->addWidget(heading("Role of the selected window"));
    column->addLayout(roles());
    column->addWidget(heading("Boxes over the round picture"));
    auto* set = new QPushButton("Set");
    auto* remove = new QPushButton("Remove");
    boxes_->setRange(1, 8);
    boxes_->setValue(4);
    connect(set, &QPushButton::clicked, this, [this] { fisheye_.setBoxes(boxes_->value()); });
    connect(remove, &QPushButton::clicked, this, [this] { fisheye_.setBoxes(0); });
    auto* line = new QHBoxLayout;
    line->addWidget(boxes_);
    line->addWidget(set, 1);
    line->addWidget(remove, 1);
    column->addLayout(line);
    column->addWidget(heading("Reports of the device"));
    column->addWidget(listener());
    column->addStretch();
    return page;
}

QLayout* FisheyePanel::roles()
{
    struct Role
    {
        const char* name;
        FisheyeRole role;
    };
    constexpr Role kRoles[] = {{"Round picture", FisheyeRole::Origin},
                               {"Panorama", FisheyeRole::Panorama},
                               {"View", FisheyeRole::View},
                               {"None", FisheyeRole::None}};
    auto* grid = new QGridLayout;
    for (int i = 0; i < 4; ++i) {
        auto* button = new QPushButton(kRoles[i].name);
        connect(button, &QPushButton::clicked, this, [this, role = kRoles[i].role] {
            fisheye_.setRole(operator_.deck().selected(), role, number_->value());
        });
        grid->addWidget(button, i / 2, i % 2);
    }
    number_->setRange(1, 9);
    number_->setPrefix("view ");
    number_->setToolTip("The number of a view");
    grid->addWidget(number_, 2, 0, 1, 2);
    return grid;
}

QWidget* FisheyePanel::listener()
{
    auto* box = new QWidget;
    auto* form = new QFormLayout(box);
    form->setContentsMargins({});
    url_->setPlaceholderText("http://camera/fisheye/reports");
    password_->setEchoMode(QLineEdit::Password);
    listen_->setCheckable(true);
    form->addRow("Address", url_);
    form->addRow("User", user_);
    form->addRow("Password", password_);
    form->addRow("", listen_);
    connect(listen_, &QPushButton::clicked, this, &FisheyePanel::listen);
    return box;
}

void FisheyePanel::listen(bool on)
{
    const QJsonObject request{
        {"url", url_->text().trimmed()}, {"auth", authOf(user_->text(), password_->text())}, {"extData", ""}};
    const QJsonValue answer = operator_.deck().call(on ? "LD_StartFishListener" : "LD_StopFishListener", request);
    listen_->setChecked(on && !isError(answer));
    listen_->setText(listen_->isChecked() ? "Stop listening" : "Listen");
}

void FisheyePanel::show(const QString& source, const QString& auth)
{
    fisheye_.show(mounting_->currentIndex(), arrangements_->checkedId(), source, auth);
}

void FisheyePanel::showAgain()
{
    if (fisheye_.corrects())
        show(operator_.current().source, operator_.current().auth);
    refresh();
}

void FisheyePanel::fillPresets()
{
    presets_->clear();
    for (const FisheyePreset& preset : fisheye_.presets())
        presets_->addItem(textOf(preset));
    refresh();
}

void FisheyePanel::refresh()
{
    moves_->setEnabled(fisheye_.corrects());
    show_->setEnabled(!fisheye_.corrects() && !operator_.current().source.isEmpty());
    sample_->setEnabled(!sample().isEmpty());
    cruise_->setEnabled(!fisheye_.presets().empty());
    if (!fisheye_.corrects()) {
        scan_->setChecked(false);
        cruise_->setChecked(false);
    }
}

QString FisheyePanel::sample() const
{
    const QString path = QStringLiteral("%1/clips/fisheye-%2.mp4")
                             .arg(QCoreApplication::applicationDirPath(), kMounts[mounting_->currentIndex()]);
    return QFile::exists(path) ? path : QString();
}

} // namespace quillmark::lumen_wall
