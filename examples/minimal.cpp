// A wall of one window that plays what the command line names.
#include <lumen_deck/lumen_deck.h>

#include <QtWidgets>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QWidget wall;
    wall.resize(1280, 720);
    LD_Release(LD_Initialize(&wall));

    const QString url = application.arguments().value(1, "test:pattern?size=704x576&rate=25");
    const QJsonDocument stream(QJsonObject{{"wndIndex", 0}, {"url", url}, {"auth", ""}});
    if (QJsonDocument* failure = LD_Play(&wall, &stream)) { // null is success
        qCritical().noquote() << failure->toJson();
        return 1;
    }
    wall.show();
    return application.exec();
}
