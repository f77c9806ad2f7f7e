#pragma once

#include "src/ApiDispatcher.h"
#include "src/util/Errors.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <functional>
#include <memory>
#include <utility>

// What stands between an exported function and its operation: the log line, the move to the main thread and the shape
// of the answer. See Export.h for the rows that use it.
namespace quillmark::lumen_deck {

// Where the body of an exported function runs; functions.def says which it is.
enum class Route
{
    Queued,          // on the main widget's thread, the caller waits
    Unmoved,         // on the caller's thread, through the dispatcher
    Direct,          // on the caller's thread
    DirectThenQueued // as Direct; the body queues its second half by itself
};

// The one dispatcher of the process.
ApiDispatcher* acquireDispatcher();

// Hands the call over and waits for its result, with no time limit.
QJsonDocument* makeCall(ApiFunctionDescriptor function, QWidget* widget, const QJsonDocument* document);
QJsonDocument* makeCall(std::function<QJsonDocument*(QWidget*, const QJsonDocument*)> function, QWidget* widget,
                        const QJsonDocument* document);
QJsonDocument* makeCall(std::function<QJsonDocument*(QWidget*)> function, QWidget* widget);
QJsonDocument* makeCall(std::function<QJsonDocument*(const QJsonDocument*)> function, const QJsonDocument* document);
QJsonDocument* makeCall(std::function<QJsonDocument*()> function);

// What the host gets: null for success with nothing to report, else a document of its own.
QJsonDocument* dealResult(std::shared_ptr<ErrorBase> error);
QJsonDocument* dealResult(const QJsonObject& object);
QJsonDocument* dealResult(const QJsonDocument& document);
QJsonDocument* dealResult(QJsonDocument* document);
QJsonDocument* dealResult(const std::pair<std::shared_ptr<ErrorBase>, QJsonDocument>& result);

// The calls of the four shapes. A null main widget is answered with an error; null args read as an empty document.
QJsonDocument* callExported(const char* name, Route route, QJsonDocument* (*body)(QWidget*, const QJsonDocument*),
                            QWidget* mainWindow, const QJsonDocument* args);
QJsonDocument* callExported(const char* name, Route route, QJsonDocument* (*body)(QWidget*), QWidget* mainWindow);
QJsonDocument* callExported(const char* name, Route route, QJsonDocument* (*body)(const QJsonDocument*),
                            const QJsonDocument* args);
QJsonDocument* callExported(const char* name, Route route, QJsonDocument* (*body)());

} // namespace quillmark::lumen_deck
