// The file local.json as somebody has left it, up to a zero byte, and a request to change it.

#include "fuzz/FuzzWall.h"

#include <QDir>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input(data, size);
    QDir(qgetenv("PWD")).mkpath(".HarborKit");
    QFile file(QString(qgetenv("PWD")) + "/.HarborKit/local.json");
    if (!file.open(QIODevice::WriteOnly))
        return 0;
    file.write(QByteArray::fromStdString(input.takeUntil('\0')));
    file.close();

    const QJsonDocument empty;
    const QJsonDocument request = QJsonDocument::fromJson(QByteArray::fromStdString(input.takeUntil('\0')));
    LD_Release(LD_GetLocalConfig(&empty));
    LD_Release(LD_SetLocalConfig(&request));
    LD_Release(LD_GetLocalConfig(&empty));
    fuzz::FuzzWall wall; // plays, records and takes pictures by these settings
    wall.ask(LD_StartSave, R"({"wndIndex":0,"fileName":"f"})");
    wall.ask(LD_Snapshot, R"({"wndIndex":0,"fileName":"f"})");
    wall.runEvents();
    return 0;
}
