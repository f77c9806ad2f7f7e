#pragma once

#include "bench/wall/Wall.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QSize>
#include <QTemporaryDir>

#include <functional>
#include <memory>

namespace bench {

// What a benchmark of walls begins with: its options, an application, a folder for the files of the library, no log.
class Program
{
public:
    Program(int& argc, char** argv, const QList<QCommandLineOption>& options);

    bool isSet(const QString& option) const { return parser_.isSet(option); }
    int integer(const QString& option) const { return parser_.value(option).toInt(); }
    double seconds() const { return parser_.value("seconds").toDouble(); }

private:
    QTemporaryDir root_;
    std::unique_ptr<QApplication> application_; // after the environment has been set
    QCommandLineParser parser_;
};

// The options of a program that measures one wall: windows, fps, width, height, seconds.
QList<QCommandLineOption> wallOptions();

using WallMaker = std::function<std::unique_ptr<Wall>(int windows, QSize size)>;

// Measures the wall that the options ask for and prints its figures as JSON. The exit status of the process.
int printWall(const Program& program, const WallMaker& make);

} // namespace bench
