// Calls and the mouse in turns on a wall with a stream. A line that begins with a letter is a function's name and its
// document, "LD_Pause {...}"; any other is mouse events of four bytes on the selected window, or the first: what happens,
// where across, where down, which buttons.

#include "fuzz/FuzzWall.h"
#include "src/LayoutDetail.h"
#include "src/LayoutManager.h"

#include <QMouseEvent>
#include <QWheelEvent>

namespace {

using fuzz::FuzzWall;
using fuzz::Input;

void runCall(FuzzWall& wall, const std::string& line)
{
    wall.call(line);
    for (auto* const query :
         {LD_GetPolygonInfo, LD_GetTextOverlay, LD_GetLineInfo, LD_GetPointInfo, LD_GetRectInfo, LD_GetGridInfo})
        LD_Release(query(wall.widget()));
}

void moveMouse(QWidget& window, Input line)
{
    constexpr QEvent::Type kinds[] = {QEvent::MouseButtonPress, QEvent::MouseMove, QEvent::MouseButtonRelease,
                                      QEvent::MouseButtonDblClick, QEvent::Wheel};
    while (line) {
        const QEvent::Type kind = kinds[line.take<std::uint8_t>() % std::size(kinds)];
        const int x = line.take<std::int8_t>() * window.width() / 64;
        const QPointF at(x, line.take<std::int8_t>() * window.height() / 64);
        const int buttons = line.take<std::uint8_t>() & 3;
        if (kind == QEvent::Wheel) {
            QWheelEvent event(at, at, {}, {0, 120 * (buttons - 1)}, {}, {}, Qt::NoScrollPhase, false);
            QApplication::sendEvent(&window, &event);
        } else {
            const auto button = kind == QEvent::MouseMove ? Qt::NoButton : Qt::MouseButton(buttons ? buttons : 1);
            QMouseEvent event(kind, at, at, at, button, Qt::MouseButtons(buttons), Qt::NoModifier);
            QApplication::sendEvent(&window, &event);
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzWall wall;
    Input input(data, size);
    while (input) {
        const std::string line = input.takeUntil('\n');
        const quillmark::lumen_deck::Layout layout(wall.widget());
        auto* const selected = layout.getSelectedPlayWindow();
        if (!line.empty() && std::isalpha(static_cast<unsigned char>(line[0])) != 0)
            runCall(wall, line);
        else if (QWidget* const window = selected ? selected : layout.getPlayWindow(0))
            moveMouse(*window, {reinterpret_cast<const std::uint8_t*>(line.data()), line.size()});
        wall.runEvents();
    }
    return 0;
}
