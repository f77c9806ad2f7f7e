#include "src/local_info.h"

#include <QDesktopServices>
#include <QJsonObject>
#include <QMap>
#include <QUrl>
#include <QVariant>

namespace {

QString dialogFilter(const QString& fileType)
{
    static const QMap<QString, QString> named = {
        {"xls", "Excel (*.xls)"}, {"txt", "TXT (*.txt)"}, {"", ""}, {"*", "*"}};
    return named.value(fileType, "*." + fileType);
}

} // namespace

QJsonDocument* LocalInfo::OpenFileBrowser(const QJsonDocument* request)
{
    enum
    {
        AskForOpenName = 0,
        AskForFolder = 2
    };
    QMap<QString, QVariant> fields;
    tools_.ParseJson(request, &fields);
    const QString start = QString::fromLatin1(tools_.GetUserHomePath().toLatin1());
    const int dialog = fields["mode"].toInt() == 0 ? auxiliary::AskForFolder : auxiliary::AskForOpenName;
    QString selectedFilter;
    const QString path =
        tools_.getAllTypeFileName(dialog, start, dialogFilter(fields["fileType"].toString()), selectedFilter);
    {
        const std::lock_guard lock(lock_);
        browsedPath_ = path;
    }
    QJsonObject answer{{"filepath", path}};
    tools_.doresult(answer);
    return new QJsonDocument(answer);
}

void LocalInfo::OpenDirectory(const QJsonDocument* request) const
{
    QMap<QString, QVariant> fields;
    tools_.ParseJson(request, &fields);
    QString folder = fields["dir"].toString();
    if (folder.isEmpty())
        folder = tools_.GetUserHomePath();
    QDesktopServices::openUrl(QUrl::fromLocalFile(folder.replace('\\', '/')));
}
