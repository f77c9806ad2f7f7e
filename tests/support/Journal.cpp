#include "tests/support/Journal.h"

#include <QByteArray>
#include <QJsonDocument>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <unistd.h>
#include <unordered_set>

namespace journal {

namespace {

struct Book
{
    std::mutex mutex;
    std::unordered_set<std::size_t> written;
    int file = -1;
};

// Appended to, in one piece a line: a program may start itself again.
int openFile()
{
    const std::string folder = qgetenv("LUMEN_DECK_JOURNAL").toStdString();
    const std::string path = folder + "/" + program_invocation_short_name + ".jsonl";
    return folder.empty() ? -1 : open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
}

// Never destroyed: the engine's threads may still send events while the process exits.
Book& book()
{
    static auto* const instance = new Book{{}, {}, openFile()};
    return *instance;
}

} // namespace

void write(const QJsonObject& line)
{
    Book& pages = book();
    if (pages.file < 0)
        return;
    QJsonObject kept = line;
    if (Tolerated::living > 0)
        kept.remove("request");
    const QByteArray text = QJsonDocument(kept).toJson(QJsonDocument::Compact) + '\n';
    const std::lock_guard lock(pages.mutex);
    const auto length = static_cast<std::size_t>(text.size());
    if (!pages.written.insert(std::hash<std::string_view>()({text.constData(), length})).second)
        return;
    if (::write(pages.file, text.constData(), length) != text.size())
        std::perror("journal");
}

} // namespace journal
