#pragma once

#include <QSocketNotifier>

namespace quillmark::lumen_wall {

// Ends the event loop when the program is interrupted or told to terminate, so that it leaves as if by its window.
class QuitOnSignal
{
public:
    QuitOnSignal();

private:
    QSocketNotifier notifier_;
};

} // namespace quillmark::lumen_wall
