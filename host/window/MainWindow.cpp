#include "host/window/MainWindow.h"

#include "host/window/AddressDialog.h"
#include "host/window/Panels.h"

#include <QDockWidget>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QMimeData>
#include <QShortcut>
#include <QStyle>

namespace quillmark::lumen_wall {

namespace {

constexpr int kPollMs = 500;
constexpr int kVolumeStep = 5;

QStringList sourcesOf(const QMimeData& data)
{
    QStringList sources;
    for (const QUrl& url : data.urls())
        sources.append(url.isLocalFile() ? url.toLocalFile() : url.toString());
    return sources;
}

} // namespace

MainWindow::MainWindow()
    : frame_(new WallFrame)
    , deck_(std::make_unique<Deck>(frame_->wall()))
    , operator_(std::make_unique<Operator>(*deck_))
    , recordings_(std::make_unique<RecordingWatch>(*operator_))
    , actions_(std::make_unique<Actions>(*operator_))
    , tags_(std::make_unique<CellTags>(*operator_, frame_))
    , status_(new StatusLine(*operator_))
{
    setWindowTitle("lumen wall");
    setWindowIcon(makeIcon("lumen-wall"));
    setAcceptDrops(true);
    setCentralWidget(frame_);
    setStatusBar(status_);
    buildToolBar();
    addKeys();
    new PanelKeys(this);

    connect(deck_.get(), &Deck::selectionChanged, this, &MainWindow::refresh);
    connect(&deck_->cells(), &CellBook::changed, this, &MainWindow::refresh);
    connect(operator_.get(), &Operator::changed, this, &MainWindow::refresh);
    connect(&operator_->talk(), &Talk::changed, this, &MainWindow::refresh);
    connect(operator_.get(), &Operator::sourceWanted, this, &MainWindow::askForFiles);
    connect(status_, &StatusLine::eventsWanted, this, [this] { showEvents_->trigger(); });
    connect(&poll_, &QTimer::timeout, this, &MainWindow::refresh);
    poll_.start(kPollMs);
    deck_->start();
}

// The wall's helpers go before the widgets that they look at.
MainWindow::~MainWindow()
{
    poll_.stop();
    tags_.reset();
}

void MainWindow::setTagsShown(bool shown)
{
    names_->setChecked(shown);
    tags_->setShown(shown);
}

void MainWindow::buildToolBar()
{
    bar_ = addToolBar("Wall");
    bar_->setMovable(false);
    bar_->setIconSize({20, 20});
    bar_->setContextMenuPolicy(Qt::PreventContextMenu);
    addSourceActions(*bar_);
    bar_->addSeparator();
    actions_->addTo(*bar_, "grid");
    bar_->addSeparator();
    actions_->addTo(*bar_, "play");
    bar_->addSeparator();
    addSpeed(*bar_);
    bar_->addSeparator();
    addSound(*bar_);
    bar_->addSeparator();
    actions_->addTo(*bar_, "capture");
    bar_->addSeparator();
    addRatio(*bar_);
    addViewActions(*bar_);
    addPanels(*bar_);
}

void MainWindow::addSourceActions(QToolBar& bar)
{
    QAction* file = makeAction(this, "open-file", "Open files, one a window", "Ctrl+O");
    connect(file, &QAction::triggered, this, [this] { askForFiles(deck_->selected()); });
    QAction* address = makeAction(this, "open-address", "Open an address", "Ctrl+L");
    connect(address, &QAction::triggered, this, [this] { askForAddress(deck_->selected()); });
    bar.addActions({file, address});
}

void MainWindow::addSpeed(QToolBar& bar)
{
    actions_->addTo(bar, "slower");
    speed_ = new QLabel;
    speed_->setObjectName("speed");
    speed_->setToolTip("Speed of the selected window");
    bar.addWidget(speed_);
    actions_->addTo(bar, "faster");
}

void MainWindow::addSound(QToolBar& bar)
{
    actions_->addTo(bar, "sound");
    volume_ = new QSlider(Qt::Horizontal);
    volume_->setRange(0, 100);
    volume_->setFixedWidth(70);
    volume_->setFocusPolicy(Qt::NoFocus);
    volume_->setToolTip("Volume of the selected window  (Up, Down)");
    connect(volume_, &QSlider::valueChanged, operator_.get(), &Operator::setVolume);
    bar.addWidget(volume_);
}

void MainWindow::addRatio(QToolBar& bar)
{
    ratio_ = new QComboBox;
    ratio_->addItems({"Fill", "4 : 3", "16 : 9", "Original", "1 : 1"});
    ratio_->setFocusPolicy(Qt::NoFocus);
    ratio_->setToolTip("How the picture fits the selected window  (A)");
    connect(ratio_, QOverload<int>::of(&QComboBox::activated), operator_.get(), &Operator::setRatio);
    bar.addWidget(ratio_);
}

void MainWindow::addViewActions(QToolBar& bar)
{
    auto* space = new QWidget;
    space->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    bar.addWidget(space);

    names_ = makeAction(this, "names", "Names on the windows", "T");
    names_->setCheckable(true);
    names_->setChecked(tags_->shown());
    connect(names_, &QAction::toggled, this, &MainWindow::setTagsShown);
    fullScreen_ = makeAction(this, "full-screen", "Full screen", "F11 F");
    fullScreen_->setCheckable(true);
    connect(fullScreen_, &QAction::toggled, this, &MainWindow::setFullScreen);
    bar.addActions({names_, fullScreen_});
}

void MainWindow::addPanels(QToolBar& bar)
{
    for (const PanelRow& row : panels()) {
        auto* dock = new QDockWidget(row.title, this);
        dock->setObjectName(row.name);
        dock->setWidget(row.make(*operator_, dock));
        dock->hide();
        addDockWidget(row.area, dock);
        const QScopedPointer<QAction> looks(makeAction(nullptr, row.name, row.title, row.keys));
        QAction* toggle = dock->toggleViewAction();
        toggle->setIcon(looks->icon());
        toggle->setToolTip(looks->toolTip());
        toggle->setShortcuts(looks->shortcuts());
        bar.addAction(toggle);
        connect(toggle, &QAction::toggled, this, [this, dock](bool on) {
            if (on)
                makeRoomFor(dock);
        });
        if (qstrcmp(row.name, "events") == 0)
            showEvents_ = toggle;
    }
}

// One panel a side, so that each has the height that it needs. One that floats is in nobody's way.
void MainWindow::makeRoomFor(QDockWidget* dock)
{
    for (auto* other : findChildren<QDockWidget*>()) {
        if (other != dock && !other->isFloating() && dockWidgetArea(other) == dockWidgetArea(dock))
            other->hide();
    }
}

// Full screen hides the toolbar, so what stands there also belongs to the window: its keys go on working.
void MainWindow::addKeys()
{
    addActions(bar_->actions());
    addKey("Up", [](Operator& wall) { wall.changeVolume(kVolumeStep); });
    addKey("Down", [](Operator& wall) { wall.changeVolume(-kVolumeStep); });
    addKey("A", [](Operator& wall) { wall.nextRatio(); });
    addKey("Return", [](Operator& wall) { wall.toggleEnlarged(wall.deck().selected()); });
    connect(new QShortcut(QKeySequence("Esc"), this), &QShortcut::activated, this, &MainWindow::leave);
    connect(new QShortcut(QKeySequence("Ctrl+Q"), this), &QShortcut::activated, this, &QWidget::close);
}

void MainWindow::addKey(const char* keys, void (*verb)(Operator&))
{
    connect(new QShortcut(QKeySequence(keys), this), &QShortcut::activated, operator_.get(),
            [this, verb] { verb(*operator_); });
}

void MainWindow::askForFiles(int cell)
{
    auto* dialog = new QFileDialog(this, QStringLiteral("Open in window %1 and those after it").arg(cell + 1));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFiles);
    dialog->setNameFilters({"Video (*.mp4 *.mkv *.avi *.mov *.ts *.h264 *.webm *.flv)", "All files (*)"});
    connect(dialog, &QFileDialog::filesSelected, operator_.get(),
            [this, cell](const QStringList& files) { operator_->openFrom(cell, files); });
    dialog->show();
}

void MainWindow::askForAddress(int cell)
{
    auto* dialog = new AddressDialog(cell, operator_->current(), this);
    connect(dialog, &AddressDialog::chosen, operator_.get(),
            [this, cell](const QString& address, const QString& auth) { operator_->open(cell, address, auth); });
    dialog->show();
}

void MainWindow::leave()
{
    if (operator_->enlarged() >= 0)
        operator_->shrink();
    else if (!frame_->hasFocus() && focusWidget())
        frame_->setFocus();
    else
        fullScreen_->setChecked(false);
}

void MainWindow::setFullScreen(bool on)
{
    bar_->setVisible(!on);
    status_->setVisible(!on);
    setWindowState(on ? windowState() | Qt::WindowFullScreen : windowState() & ~Qt::WindowFullScreen);
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event)
{
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event)
{
    const int cell = cellAt(event->pos());
    operator_->openFrom(cell >= 0 ? cell : deck_->selected(), sourcesOf(*event->mimeData()));
    event->acceptProposedAction();
}

int MainWindow::cellAt(const QPoint& position) const
{
    const QPoint onWall = frame_->wall()->mapFrom(this, position);
    for (int index = deck_->cells().count() - 1; index >= 0; --index) {
        const QWidget* cell = cellWidget(frame_->wall(), index);
        if (!cell->isHidden() && cell->geometry().contains(onWall))
            return index;
    }
    return -1;
}

void MainWindow::refresh()
{
    const CellState cell = operator_->current();
    const bool playing = operator_->isPlaying(deck_->selected());
    actions_->refresh({cell, playing, operator_->grid(), operator_->dragable()});
    status_->refresh(cell, playing);
    speed_->setText(playing ? speedText(cell.speedStep) : QString());
    const QSignalBlocker quiet(volume_);
    volume_->setValue(cell.volume);
    volume_->setEnabled(playing && cell.sound);
    ratio_->setCurrentIndex(cell.ratio);
}

} // namespace quillmark::lumen_wall
