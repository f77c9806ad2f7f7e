#pragma once

#include <QJsonObject>
#include <QString>
#include <QWidget>

#include <cstdint>

namespace bench {

// A shown wall that plays one clip in every window, driven through the library's own interface. Needs a QApplication.
class BenchWall
{
public:
    BenchWall(int windows, QSize size);

    void play(const QString& clip);
    void hide() { widget_.hide(); }
    // One call for each window, with its `wndIndex` added and a `fileName` made its own. Ends the process when the library
    // refuses.
    void forEach(const char* name, QJsonDocument* (*function)(QWidget*, const QJsonDocument*),
                 const QJsonObject& request);

    std::uint64_t shown() const; // frames since the start, of all windows

private:
    QWidget widget_;
    int windows_;
    // The engine gives the play ids from one counter.
    int firstId_ = 0;
    int lastId_ = 0;
};

void runFor(double seconds);           // the event loop
double processorsOver(double seconds); // in use by the process while the event loop runs

} // namespace bench
