#include <lumen_deck/lumen_deck.h>

#include <QApplication>
#include <QWidget>

#include <cstdio>

// A host in its smallest form: a wall of four windows.
int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QWidget wall;
    wall.resize(640, 360);
    wall.show();
    LD_Release(LD_Initialize(&wall));
    const QJsonDocument grid = QJsonDocument::fromJson(R"({"type": 2})");
    LD_Release(LD_ArrangeWindow(&wall, &grid));
    std::printf("%d windows\n", LD_WindowCount(&wall));
    return LD_WindowCount(&wall) == 4 ? 0 : 1;
}
