// Layout documents, one a line, each with a drag of its first window.

#include "fuzz/FuzzWall.h"
#include "fuzz/Input.h"
#include "src/LayoutDetail.h"
#include "src/LayoutManager.h"

#include <QMouseEvent>

namespace {

void drag(QWidget& widget)
{
    const QPointF from(10, 10);
    const QPointF to(200, 150);
    for (const auto& [type, at] : {std::pair{QEvent::MouseButtonPress, from}, std::pair{QEvent::MouseMove, to},
                                   std::pair{QEvent::MouseButtonRelease, to}}) {
        QMouseEvent event(type, at, at, at, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&widget, &event);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::FuzzWall wall;
    fuzz::Input input(data, size);
    while (input) {
        const std::string line = input.takeUntil('\n');
        wall.ask(LD_SetLayout, line);
        wall.ask(LD_ArrangeWindow, R"({"custom":)" + line + "}");
        if (QWidget* const window = quillmark::lumen_deck::Layout(wall.widget()).getPlayWindow(0))
            drag(*window);
        LD_Release(LD_QueryLayout(wall.widget()));
        wall.runEvents();
    }
    return 0;
}
