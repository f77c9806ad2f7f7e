#include "src/interface/CallFrame.h"
#include "tests/support/Journal.h"

#include "include/lumen_deck/lumen_deck.h"

#include <QJsonArray>

// The linker leads every use of these symbols here (--wrap, see tests/CMakeLists.txt): all calls of exported functions
// with documents and all events pass by, whoever makes them and whether or not a callback is installed.

namespace quillmark::lumen_deck {

namespace {

using WithBoth = QJsonDocument* (*)(QWidget*, const QJsonDocument*);
using WithWidget = QJsonDocument* (*)(QWidget*);
using WithDocument = QJsonDocument* (*)(const QJsonDocument*);
using WithNothing = QJsonDocument* (*)();

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

QJsonDocument* real(const char*, Route, WithBoth, QWidget*, const QJsonDocument*) REAL(CALL "P7QWidgetPKS4_ES7_S9_");
QJsonDocument* real(const char*, Route, WithWidget, QWidget*) REAL(CALL "P7QWidgetES7_");
QJsonDocument* real(const char*, Route, WithDocument, const QJsonDocument*) REAL(CALL "PKS4_ES7_");
QJsonDocument* real(const char*, Route, WithNothing) REAL(CALL "vE");
QJsonDocument* realInitialize(QWidget*) REAL("LD_Initialize");
void realEvent(LD_EventType, QWidget*, const QJsonDocument*) REAL(EVENT);

QJsonDocument* wrap(const char*, Route, WithBoth, QWidget*, const QJsonDocument*) WRAP(CALL "P7QWidgetPKS4_ES7_S9_");
QJsonDocument* wrap(const char*, Route, WithWidget, QWidget*) WRAP(CALL "P7QWidgetES7_");
QJsonDocument* wrap(const char*, Route, WithDocument, const QJsonDocument*) WRAP(CALL "PKS4_ES7_");
QJsonDocument* wrap(const char*, Route, WithNothing) WRAP(CALL "vE");
QJsonDocument* wrapInitialize(QWidget*) WRAP("LD_Initialize");
void wrapEvent(LD_EventType, QWidget*, const QJsonDocument*) WRAP(EVENT);

QJsonDocument* wrap(const char* name, Route route, WithBoth body, QWidget* mainWindow, const QJsonDocument* args)
{
    return journaled(name, args, real(name, route, body, mainWindow, args));
}

QJsonDocument* wrap(const char* name, Route route, WithWidget body, QWidget* mainWindow)
{
    return journaled(name, real(name, route, body, mainWindow));
}

QJsonDocument* wrap(const char* name, Route route, WithDocument body, const QJsonDocument* args)
{
    return journaled(name, args, real(name, route, body, args));
}

QJsonDocument* wrap(const char* name, Route route, WithNothing body)
{
    return journaled(name, real(name, route, body));
}

QJsonDocument* wrapInitialize(QWidget* mainWindow)
{
    return journaled("LD_Initialize", realInitialize(mainWindow));
}

void wrapEvent(LD_EventType type, QWidget* mainWindow, const QJsonDocument* document)
{
    if (document) // a test of the callbacks by themselves has none
        journal::write({{"event", type}, {"document", document->object()}});
    realEvent(type, mainWindow, document);
}

} // namespace quillmark::lumen_deck
