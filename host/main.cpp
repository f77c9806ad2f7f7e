#include "host/Options.h"
#include "host/QuitOnSignal.h"
#include "host/Theme.h"
#include "host/control/ControlChannel.h"
#include "host/wall/LocalSettings.h"
#include "host/window/MainWindow.h"
#include "host/window/WallReport.h"

#include <QApplication>
#include <QFile>
#include <QLoggingCategory>
#include <QTimer>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <unistd.h>

using namespace quillmark::lumen_wall;

namespace {

constexpr std::chrono::milliseconds kPatience(2000);

bool hasDisplay()
{
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
}

QString styleSheet()
{
    QFile file(":/dark.qss");
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

void setUp(MainWindow& window, const Options& options)
{
    Operator& wall = window.operatorOfWall();
    wall.setLooping(options.loop);
    window.setTagsShown(options.names);
    if (options.protocol)
        writeSettings(wall.deck(), {{"protocolType", QString::number(*options.protocol)}});
    wall.setGrid(options.grid);
    if (options.dragable)
        wall.setDragable(true);
    window.resize(options.size);
    if (options.fullScreen)
        window.showFullScreen();
    else
        window.show();
    for (int cell = 0; options.ratio != 0 && cell < wall.deck().cells().count(); ++cell)
        wall.deck().call("LD_SetWndRatioMode", {{"wndIndex", cell}, {"mode", options.ratio}});
}

void play(MainWindow& window, const Options& options)
{
    Operator& wall = window.operatorOfWall();
    wall.openFrom(0, options.sources);
    if (options.sound > 0)
        wall.setSound(options.sound - 1);
}

void end(MainWindow& window, const Options& options)
{
    const QString problem = options.screenshot.isEmpty() ? QString() : writeScreenshot(window, options.screenshot);
    if (!problem.isEmpty())
        std::cerr << "lumen-wall: " << problem.toStdString() << std::endl;
    QCoreApplication::exit(problem.isEmpty() ? 0 : 1);
}

std::unique_ptr<ControlChannel> openControl(MainWindow& window)
{
    Operator& wall = window.operatorOfWall();
    ControlChannel::Services services{
        [&] { return describeWall(wall, window); },
        [&](const QString& path) { return writeScreenshot(window, path); },
    };
    auto channel = std::make_unique<ControlChannel>(wall.deck(), services, STDIN_FILENO, STDOUT_FILENO);
    // Not close(): a dialog that a call has opened must not keep the program.
    QObject::connect(channel.get(), &ControlChannel::ended, &QCoreApplication::quit);
    return channel;
}

// A server that does not answer keeps the program for a moment only: recordings are ended, and nobody is waited for.
void leaveWithoutServers(Deck& deck, int code)
{
    if (deck.settle(kPatience))
        return;
    deck.call("LD_StopRealPlayAll");
    std::_Exit(code);
}

} // namespace

int main(int argc, char** argv)
{
    const CommandLine line = parseCommandLine(argc, argv);
    if (line.exitCode)
        return *line.exitCode;
    const Options& options = line.options;
    if (!hasDisplay()) {
        std::cerr << "lumen-wall: there is no display: DISPLAY is not set\n";
        return 2;
    }

    std::signal(SIGPIPE, SIG_IGN); // a program that has gone away must not take the wall with it unasked
    QLoggingCategory::setFilterRules(options.logRules);
    QCoreApplication::setAttribute(Qt::AA_DontCreateNativeWidgetSiblings);
    QApplication application(argc, argv);
    const QuitOnSignal quitOnSignal;
    application.setStyle("Fusion");
    application.setPalette(theme::palette());
    application.setStyleSheet(styleSheet());

    MainWindow window;
    setUp(window, options);
    std::unique_ptr<ControlChannel> control;
    QTimer::singleShot(0, &window, [&] {
        play(window, options);
        if (options.control)
            control = openControl(window);
    });
    if (options.seconds > 0)
        QTimer::singleShot(options.seconds * 1000, &window, [&] { end(window, options); });
    const int code = QApplication::exec();
    control.reset();
    leaveWithoutServers(window.operatorOfWall().deck(), code);
    return code;
}
