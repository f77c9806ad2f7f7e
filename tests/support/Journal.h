#pragma once

#include <QJsonObject>

#include <atomic>

// What goes between the tests and the library, a JSON object a line, in a file a program in the folder that
// LUMEN_DECK_JOURNAL names: scripts/check_documents.py holds it against docs/schema. Nothing is written without it.
//
//     {"call": NAME, "request": document, "answer": document}   what every call of the library said
//     {"event": type, "document": document}
//     {"line": object}, {"status": object}                      what lumen-wall wrote
namespace journal {

void write(const QJsonObject& line); // once for equal lines

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

} // namespace journal
