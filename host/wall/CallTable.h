#pragma once

#include <lumen_deck/lumen_deck.h>

#include <QJsonDocument>
#include <QJsonValue>
#include <QString>

#include <variant>
#include <vector>

// Every exported function of the library, callable by its name with a JSON document.
namespace quillmark::lumen_wall {

enum class Route
{
    Queued,
    Unmoved,
    Direct,
    DirectThenQueued
};

struct Function
{
    // One alternative for each signature of the library.
    using Pointer = std::variant<QJsonDocument* (*)(QWidget*, const QJsonDocument*), QJsonDocument* (*)(QWidget*),
                                 QJsonDocument* (*)(const QJsonDocument*), QJsonDocument* (*)(), void (*)(void*),
                                 void (*)(QWidget*, int), bool (*)(QWidget*, int), int (*)(QWidget*),
                                 int (*)(const QWidget*), LD_EventCallback (*)(LD_EventType, LD_EventCallback)>;

    const char* name;
    Route route;
    Pointer pointer;
};

const std::vector<Function>& functions();
const Function* findFunction(const QString& name);

// Functions that touch widgets on the caller's thread: a worker must not call them.
bool belongsToMainThread(const Function& function);

struct Reply
{
    QJsonValue result; // null, the returned document, bool or int
    QString refusal;   // not empty: the arguments do not fit the function, and nothing was called
};

// On any thread that the function allows. `callback` is what LD_InstallEventCallback installs.
Reply invoke(const Function& function, QWidget* wall, const QJsonDocument& args, LD_EventCallback callback);

// The widget of a cell, named by index or by name, and the window that its video is drawn in; null if there is none.
// Main thread.
QWidget* cellWidget(QWidget* wall, const QJsonValue& reference);
QWidget* playWindow(QWidget* wall, int index);

bool isError(const QJsonValue& result);

} // namespace quillmark::lumen_wall
