#include "host/QuitOnSignal.h"

#include <QCoreApplication>

#include <csignal>
#include <sys/eventfd.h>
#include <unistd.h>

namespace quillmark::lumen_wall {

namespace {

int wakeUp = -1; // written by the signal handler, which may do little else

void onSignal(int)
{
    const eventfd_t one = 1;
    [[maybe_unused]] const ssize_t written = write(wakeUp, &one, sizeof(one));
}

int openWakeUp()
{
    wakeUp = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    return wakeUp;
}

} // namespace

QuitOnSignal::QuitOnSignal()
    : notifier_(openWakeUp(), QSocketNotifier::Read)
{
    QObject::connect(&notifier_, &QSocketNotifier::activated, &QCoreApplication::quit);
    std::signal(SIGINT, &onSignal);
    std::signal(SIGTERM, &onSignal);
}

} // namespace quillmark::lumen_wall
