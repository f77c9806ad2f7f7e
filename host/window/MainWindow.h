#pragma once

#include "host/wall/Operator.h"
#include "host/wall/RecordingWatch.h"
#include "host/wall/WallFrame.h"
#include "host/window/Actions.h"
#include "host/window/CellTags.h"
#include "host/window/StatusLine.h"

#include <QComboBox>
#include <QLabel>
#include <QMainWindow>
#include <QSlider>
#include <QTimer>

#include <memory>

class QDockWidget;

namespace quillmark::lumen_wall {

// The operator's window: the wall, a toolbar above it, a status line below, and the panels' docks.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    MainWindow();
    ~MainWindow() override;

    Operator& operatorOfWall() { return *operator_; }
    void setTagsShown(bool shown);

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void buildToolBar();
    void addSourceActions(QToolBar& bar);
    void addSpeed(QToolBar& bar);
    void addSound(QToolBar& bar);
    void addRatio(QToolBar& bar);
    void addViewActions(QToolBar& bar);
    void addPanels(QToolBar& bar);
    void makeRoomFor(QDockWidget* dock);
    void addKeys();
    void addKey(const char* keys, void (*verb)(Operator&));

    void askForFiles(int cell);
    void askForAddress(int cell);
    void leave(); // the enlarged cell, or else a panel's field, or else full screen
    void setFullScreen(bool on);
    int cellAt(const QPoint& position) const;
    void refresh();

    WallFrame* const frame_;
    std::unique_ptr<Deck> deck_;
    std::unique_ptr<Operator> operator_;
    std::unique_ptr<RecordingWatch> recordings_;
    std::unique_ptr<Actions> actions_;
    std::unique_ptr<CellTags> tags_;
    StatusLine* status_ = nullptr;
    QToolBar* bar_ = nullptr;
    QLabel* speed_ = nullptr;
    QSlider* volume_ = nullptr;
    QComboBox* ratio_ = nullptr;
    QAction* names_ = nullptr;
    QAction* fullScreen_ = nullptr;
    QAction* showEvents_ = nullptr;
    QTimer poll_;
};

} // namespace quillmark::lumen_wall
