#include "bench/wall/Program.h"

#include "bench/wall/Figures.h"
#include "bench/wall/Measure.h"

#include <QLoggingCategory>

#include <cstdio>

namespace bench {

Program::Program(int& argc, char** argv, const QList<QCommandLineOption>& options)
{
    qputenv("PWD", root_.path().toLocal8Bit()); // the library keeps its files where PWD points
    QLoggingCategory::setFilterRules("*.debug=false");
    application_ = std::make_unique<QApplication>(argc, argv);
    parser_.addHelpOption();
    parser_.addOptions(options);
    parser_.process(*application_);
}

QList<QCommandLineOption> wallOptions()
{
    return {{"windows", "one wall of <n> windows", "n", "0"},
            {"fps", "clip with <n> frames a second: 5 or 25", "n", "25"},
            {"width", "of the wall", "pixels", "1920"},
            {"height", "of the wall", "pixels", "1080"},
            {"seconds", "measured for each wall", "n", "8"}};
}

int printWall(const Program& program, const WallMaker& make)
{
    const int windows = program.integer("windows");
    const Clip played{clip(program.integer("fps")), program.integer("fps")};
    if (played.path.isEmpty() || windows <= 0)
        return 1;
    const std::unique_ptr<Wall> wall = make(windows, {program.integer("width"), program.integer("height")});
    print(measure(*wall, windows, played, program.seconds()));
    return 0;
}

} // namespace bench
