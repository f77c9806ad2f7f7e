#pragma once

#include <QSize>
#include <QString>
#include <QStringList>

#include <optional>

namespace quillmark::lumen_wall {

struct Options
{
    QStringList sources; // one a window; files are absolute paths
    int grid = 0;        // windows a side
    int ratio = 0;
    int seconds = 0; // 0: until the window is closed
    int sound = 0;   // the window to be heard, from 1; 0: silence
    std::optional<int> protocol;
    QSize size{1280, 780};
    QString screenshot;
    QString logRules;
    bool control = false;
    bool loop = false;
    bool fullScreen = false;
    bool dragable = false;
    bool names = true;
};

// Options, or the exit code of a program that has already said what was wrong or helped.
struct CommandLine
{
    Options options;
    std::optional<int> exitCode;
};

CommandLine parseCommandLine(int argc, char** argv);

} // namespace quillmark::lumen_wall
