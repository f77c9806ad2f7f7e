#pragma once

#include "host/wall/Deck.h"
#include "host/wall/Fisheye.h"
#include "host/wall/Talk.h"
#include "host/wall/Transfers.h"

#include <QObject>
#include <QSet>
#include <QStringList>

namespace quillmark::lumen_wall {

// What an operator does: grids, sources, and the verbs that act on the selected cell. Main thread.
class Operator : public QObject
{
    Q_OBJECT

public:
    explicit Operator(Deck& deck);

    Deck& deck() { return deck_; }
    Fisheye& fisheye() { return fisheye_; }
    Talk& talk() { return talk_; }
    Transfers& transfers() { return transfers_; }
    CellState current() const { return deck_.cells().state(deck_.selected()); }
    bool isPlaying(int cell) const;
    int grid() const; // the side; 0: views of a round picture, or what a program has arranged
    bool dragable() const { return dragable_; }
    int enlarged() const { return enlarged_; } // -1: none

    void setLooping(bool on) { looping_ = on; } // start a source again when it ends
    void setGrid(int side);
    void setDragable(bool on);
    void toggleEnlarged(int cell);
    void shrink();

    void open(int cell, const QString& source, const QString& auth = {});
    void openFrom(int cell, const QStringList& sources); // one a cell, from `cell` on

    void play();  // from the start, or on after a pause
    void pause(); // and on again
    void stop();
    void reverse();
    void step();
    void faster();
    void slower();
    void toggleSound();
    void setSound(int cell);
    void setVolume(int percent);
    void changeVolume(int percent);
    void toggleRecording();
    void snapshot();
    void showRecordings();
    void setRatio(int mode);
    void nextRatio();

signals:
    void changed();                                             // grid, dragging, enlarged cell
    void sourceWanted(int cell);                                // play was asked for in a cell without one
    void reported(int severity, int cell, const QString& text); // what happened in a cell, for people

private:
    void arrange();
    QJsonObject cellDocument(int index) const;
    QRectF placeInGrid(int index) const;
    QRectF placeOnScreen(int index) const;
    QJsonValue callSelected(const char* function, QJsonObject args = {});
    void start(int cell, const QString& source, const QString& auth, const QString& from = {});
    QString moment(int cell) const;
    void onEvent(int type, const QJsonObject& document);
    void onStreamEvent(int cell, int code);
    void endRecording(int cell);
    QString fileName() const;
    void playAgain(int cell);
    void onLayout();
    bool hasEnded(int cell) const;

    Deck& deck_;
    Fisheye fisheye_;
    Talk talk_;
    Transfers transfers_;
    int grid_ = 1;
    int enlarged_ = -1;
    bool dragable_ = false;
    bool keepPlaces_ = false; // the next arrangement leaves the cells where they are
    bool looping_ = false;
    QSet<QWidget*> laidOut_; // the cells of the layout, to know which come back
};

} // namespace quillmark::lumen_wall
