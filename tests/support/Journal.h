#pragma once

#include <QJsonDocument>
#include <QJsonObject>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <functional>
#include <mutex>
#include <set>
#include <string>
#include <unistd.h>

// What goes between the tests and the library, a JSON object a line, in a file a program in the folder that
// LUMEN_DECK_JOURNAL names: scripts/check_documents.py holds it against docs/schema. Nothing is written without it.
//
//     {"call": NAME, "request": document, "answer": document}   what every call of the library said
//     {"event": type, "document": document}
//     {"line": object}, {"status": object}                      what lumen-wall wrote
namespace journal {

// While one lives, requests need not fit their schemas though the library takes them: leniency is what is tested.
class Tolerated
{
public:
    Tolerated() { ++living; }
    ~Tolerated() { --living; }
    Tolerated(const Tolerated&) = delete;
    Tolerated& operator=(const Tolerated&) = delete;

    static inline std::atomic<int> living{0};
};

// Appended to, in one piece a line: a program may start itself again.
inline int openFile()
{
    const std::string folder = qgetenv("LUMEN_DECK_JOURNAL").toStdString();
    const std::string path = folder + "/" + program_invocation_short_name + ".jsonl";
    return folder.empty() ? -1 : open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
}

// Once for equal lines. What it needs is never destroyed: the engine's threads may send events while the process exits.
inline void write(QJsonObject line)
{
    static auto* const mutex = new std::mutex;
    static auto* const written = new std::set<std::size_t>;
    static const int file = openFile();
    if (file < 0)
        return;
    if (Tolerated::living > 0)
        line.remove("request");
    const std::string text = QJsonDocument(line).toJson(QJsonDocument::Compact).toStdString() + '\n';
    const std::lock_guard lock(*mutex);
    if (written->insert(std::hash<std::string>()(text)).second && ::write(file, text.data(), text.size()) < 0)
        std::perror("journal");
}

} // namespace journal
