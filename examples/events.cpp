// One large window beside three small ones. A double click makes its window the only one and brings the others back;
// what happens to the streams is told on standard output.
#include <lumen_deck/lumen_deck.h>

#include <QtWidgets>

#include <iostream>

namespace {

// Every answer belongs to us: look at it, then give it back.
bool succeeded(QJsonDocument* answer)
{
    const bool failed = answer && answer->object().contains("errorCode");
    if (failed)
        std::cerr << answer->toJson().toStdString();
    LD_Release(answer);
    return !failed;
}

QJsonDocument layout()
{
    const double small = 1.0 / 3.0;
    QJsonArray cells{QJsonObject{{"left", 0}, {"top", 0}, {"width", 1 - small}, {"height", 1}, {"name", "large"}}};
    for (int row = 0; row < 3; ++row)
        cells.append(QJsonObject{{"left", 1 - small}, {"top", row * small}, {"width", small}, {"height", small}});
    return QJsonDocument(cells);
}

// The main thread.
void onDoubleClick(LD_EventType, QWidget* wall, const QJsonDocument* event)
{
    const int chosen = event->object()["wndIndex"].toInt();
    static bool single = false;
    single = !single;
    for (int index = 0; index < LD_WindowCount(wall); ++index)
        single && index != chosen ? LD_HideWindow(wall, index) : LD_ShowWindow(wall, index);
}

// May come on a thread of the stream engine: take what is needed, and go on on the main thread.
void onStream(LD_EventType, QWidget* wall, const QJsonDocument* event)
{
    const QJsonObject document = event->object();
    QMetaObject::invokeMethod(wall, [document] {
        static const QMap<int, const char*> words{{1, "the picture is there"},  {2, "cannot be opened"},
                                                  {3, "log-in refused"},        {4, "end of the recording"},
                                                  {5, "connection lost"},       {6, "connection restored"},
                                                  {7, "the picture stands still"}, {8, "the picture moves again"}};
        const int code = document["eventType"].toInt();
        std::cout << "window " << document["wndIndex"].toInt() << ": " << words.value(code, "another event") << std::endl;
    });
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QWidget wall;
    wall.resize(1280, 720);
    LD_InstallEventCallback(LD_EVENT_DOUBLE_CLICKED, &onDoubleClick);
    LD_InstallEventCallback(LD_EVENT_STREAM, &onStream);

    const QJsonDocument cells = layout();
    bool good = succeeded(LD_Initialize(&wall)) && succeeded(LD_SetLayout(&wall, &cells));
    for (int index = 0; good && index < LD_WindowCount(&wall); ++index) {
        const QString url = application.arguments().value(1 + index, "test:pattern?size=704x576&rate=25");
        const QJsonDocument stream(QJsonObject{{"wndIndex", index}, {"url", url}, {"auth", ""}});
        good = succeeded(LD_Play(&wall, &stream));
    }
    wall.show();
    return good ? application.exec() : 1;
}
