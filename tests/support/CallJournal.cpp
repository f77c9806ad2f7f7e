#include "src/interface/CallFrame.h"
#include "tests/support/Functions.h"
#include "tests/support/Journal.h"

#include <QJsonArray>

// The linker leads every use of these symbols here (--wrap, see tests/CMakeLists.txt): all calls of exported functions
// with documents and all events pass by, whoever makes them and whether or not a callback is installed.

namespace quillmark::lumen_deck {

namespace {

using namespace functions;

QJsonValue valueOf(const QJsonDocument* document, const QJsonValue& none)
{
    if (!document)
        return none;
    QJsonObject object = document->object();
    if (object.contains("json_string")) // may be as large as the request
        object["json_string"] = object["json_string"].toString().left(80);
    return document->isArray() ? QJsonValue(document->array()) : QJsonValue(object);
}

QJsonDocument* journaled(const char* name, const QJsonDocument* request, QJsonDocument* answer)
{
    journal::write(
        {{"call", name}, {"request", valueOf(request, QJsonObject())}, {"answer", valueOf(answer, QJsonValue::Null)}});
    return answer;
}

QJsonDocument* journaled(const char* name, QJsonDocument* answer)
{
    journal::write({{"call", name}, {"answer", valueOf(answer, QJsonValue::Null)}});
    return answer;
}

} // namespace

#define CALL "_ZN9quillmark10lumen_deck12callExportedEPKcNS0_5RouteEPFP13QJsonDocument"
#define EVENT "_ZN9quillmark10lumen_deck12callCallbackE12LD_EventTypeP7QWidgetPK13QJsonDocument"
#define REAL(symbol) __asm__("__real_" symbol)
#define WRAP(symbol) __asm__("__wrap_" symbol)
// The function of the symbol that keeps `...` and what the real one answers.
#define JOURNALED(symbol, function, parameters, arguments, ...)                                                        \
    QJsonDocument* real##function parameters REAL(symbol);                                                             \
    QJsonDocument* wrap##function parameters WRAP(symbol);                                                             \
    QJsonDocument* wrap##function parameters                                                                           \
    {                                                                                                                  \
        return journaled(__VA_ARGS__, real##function arguments);                                                       \
    }

// clang-format off
JOURNALED(CALL "P7QWidgetPKS4_ES7_S9_", Call,
    (const char* name, Route route, WithBoth body, QWidget* mainWindow, const QJsonDocument* args),
    (name, route, body, mainWindow, args), name, args)
JOURNALED(CALL "P7QWidgetES7_", Call,
    (const char* name, Route route, WithWidget body, QWidget* mainWindow), (name, route, body, mainWindow), name)
JOURNALED(CALL "PKS4_ES7_", Call,
    (const char* name, Route route, WithDocument body, const QJsonDocument* args), (name, route, body, args), name, args)
JOURNALED(CALL "vE", Call, (const char* name, Route route, WithNothing body), (name, route, body), name)
JOURNALED("LD_Initialize", Initialize, (QWidget* mainWindow), (mainWindow), "LD_Initialize")
// clang-format on

void realEvent(LD_EventType, QWidget*, const QJsonDocument*) REAL(EVENT);
void wrapEvent(LD_EventType, QWidget*, const QJsonDocument*) WRAP(EVENT);

void wrapEvent(LD_EventType type, QWidget* mainWindow, const QJsonDocument* document)
{
    if (document) // a test of the callbacks by themselves has none
        journal::write({{"event", type}, {"document", document->object()}});
    realEvent(type, mainWindow, document);
}

} // namespace quillmark::lumen_deck
