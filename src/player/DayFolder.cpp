#include "src/player/DayFolder.h"

#include "src/local_info.h"

#include <QDate>
#include <QDir>

namespace quillmark::lumen_deck {

QString useDayFolder(const QString& key)
{
    const QString folder = LocalInfo().GetLocalInfo(key) + "/" + QDate::currentDate().toString("yyyy-MM-dd");
    QDir().mkpath(folder);
    return folder;
}

} // namespace quillmark::lumen_deck
