#pragma once

#include "bench/wall/Wall.h"

#include <QJsonObject>
#include <QWidget>

namespace bench {

// The library's wall, driven through its own interface. Needs a QApplication.
class BenchWall : public Wall
{
public:
    BenchWall(int windows, QSize size);

    void play(const QString& clip) override;
    void hide() override { widget_.hide(); }
    std::uint64_t shown() const override;
    int windowsWithPicture() const override;

    // One call for each window, with its `wndIndex` added and a `fileName` made its own. Ends the process when the library
    // refuses.
    void forEach(const char* name, QJsonDocument* (*function)(QWidget*, const QJsonDocument*),
                 const QJsonObject& request);

private:
    template <class Take> void forEachPlay(Take take) const; // take(PresenterStats)

    QWidget widget_;
    int windows_;
    // The engine gives the play ids from one counter.
    int firstId_ = 0;
    int lastId_ = 0;
};

} // namespace bench
