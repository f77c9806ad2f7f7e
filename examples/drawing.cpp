// Shapes over the running video: a region and a name are given, and the user draws rectangles with the mouse, which are
// told on standard output.
#include <lumen_deck/lumen_deck.h>

#include <QtWidgets>

#include <iostream>

namespace {

using Request = QJsonDocument* (*)(QWidget*, const QJsonDocument*);

bool call(Request function, QWidget& wall, const QJsonObject& request)
{
    const QJsonDocument document(request);
    QJsonDocument* answer = function(&wall, &document);
    if (answer)
        std::cerr << answer->toJson().toStdString();
    LD_Release(answer);
    return answer == nullptr;
}

// The main thread. The document is ours until we return.
void onShape(LD_EventType, QWidget*, const QJsonDocument* shape)
{
    std::cout << "drawn: " << shape->toJson(QJsonDocument::Compact).toStdString() << std::endl;
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QWidget wall;
    wall.resize(960, 540);
    LD_InstallEventCallback(LD_EVENT_SHAPE_FINISHED, &onShape);
    LD_Release(LD_Initialize(&wall));

    // Places are fractions of the window: [0, 0] is its top left, [1, 1] its bottom right.
    const QJsonArray corners{QJsonArray{0.1, 0.2}, QJsonArray{0.4, 0.15}, QJsonArray{0.45, 0.6}, QJsonArray{0.12, 0.55}};
    const QJsonObject region{{"id", 1}, {"points", corners}, {"drawColor", "#00ff80"}, {"tips", "entrance"}};
    const QJsonObject name{{"name", "Gate 3"}, {"enable", true}, {"point", QJsonArray{0.02, 0.9}}};
    const QString url = application.arguments().value(1, "test:pattern?size=704x576&rate=25");

    const bool good = call(LD_Play, wall, {{"wndIndex", 0}, {"url", url}, {"auth", ""}}) &&
                      call(LD_SetPolygonInfo, wall, {{"polygonInfo", QJsonArray{region}}}) &&
                      call(LD_SetTextOverlay, wall, {{"overlayInfo", QJsonObject{{"channelName", name}}}}) &&
                      call(LD_SetDrawCallback, wall, {{"enable", true}, {"type", "Rect"}, {"drawColor", "#ff8000"}});
    wall.show();
    return good ? application.exec() : 1;
}
