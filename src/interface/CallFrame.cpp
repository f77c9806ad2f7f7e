#include "src/interface/CallFrame.h"

#include <QDebug>
#include <QLoggingCategory>
#include <QRegularExpression>

namespace quillmark::lumen_deck {

namespace {

const QJsonDocument& documentOrEmpty(const QJsonDocument* args)
{
    static const QJsonDocument empty;
    return args ? *args : empty;
}

QJsonDocument* noMainWindow(const char* name)
{
    return dealResult(std::make_shared<ReferenceError>(QString(name) + " needs a main window", LUMEN_HERE));
}

// The text of a document as it may stand in a log: no credential, neither by itself nor in an address.
QString textForLog(const QJsonDocument& args)
{
    static const QRegularExpression credential(R"re(("auth":\s*)"(?:[^"\\]|\\.)*")re");
    static const QRegularExpression login(R"re((\w://)[^/\s"]*@)re");
    return QString::fromUtf8(args.toJson()).replace(credential, R"(\1"***")").replace(login, R"(\1***@)");
}

// The text of a document may be long: it is made only for somebody who reads it.
void logCall(const char* name, const QWidget* mainWindow, const QJsonDocument& args)
{
    if (!QLoggingCategory::defaultCategory()->isDebugEnabled())
        return;
    qDebug().noquote() << name << "of mainWindow" << static_cast<const void*>(mainWindow) << "json arguments: \n"
                       << textForLog(args);
}

void logCall(const char* name)
{
    qDebug() << name;
}

} // namespace

ApiDispatcher* acquireDispatcher()
{
    static ApiDispatcher dispatcher;
    return &dispatcher;
}

QJsonDocument* makeCall(ApiFunctionDescriptor function, QWidget* widget, const QJsonDocument* document)
{
    const auto promise = acquireDispatcher()->makeCall(function, widget, document);
    auto result = promise->get_future();
    result.wait();
    return result.get();
}

QJsonDocument* makeCall(std::function<QJsonDocument*(QWidget*, const QJsonDocument*)> function, QWidget* widget,
                        const QJsonDocument* document)
{
    ApiFunctionDescriptor descriptor;
    descriptor.withWidgetAndDocument = std::move(function);
    return makeCall(descriptor, widget, document);
}

QJsonDocument* makeCall(std::function<QJsonDocument*(QWidget*)> function, QWidget* widget)
{
    ApiFunctionDescriptor descriptor;
    descriptor.withWidget = std::move(function);
    return makeCall(descriptor, widget, nullptr);
}

QJsonDocument* makeCall(std::function<QJsonDocument*(const QJsonDocument*)> function, const QJsonDocument* document)
{
    ApiFunctionDescriptor descriptor;
    descriptor.withDocument = std::move(function);
    return makeCall(descriptor, nullptr, document);
}

QJsonDocument* makeCall(std::function<QJsonDocument*()> function)
{
    ApiFunctionDescriptor descriptor;
    descriptor.withNothing = std::move(function);
    return makeCall(descriptor, nullptr, nullptr);
}

QJsonDocument* dealResult(std::shared_ptr<ErrorBase> error)
{
    return error ? new QJsonDocument(error->toJson()) : nullptr;
}

QJsonDocument* dealResult(const QJsonObject& object)
{
    return new QJsonDocument(object);
}

QJsonDocument* dealResult(const QJsonDocument& document)
{
    return new QJsonDocument(document);
}

QJsonDocument* dealResult(QJsonDocument* document)
{
    return document;
}

QJsonDocument* dealResult(const std::pair<std::shared_ptr<ErrorBase>, QJsonDocument>& result)
{
    return result.first ? dealResult(result.first) : dealResult(result.second);
}

QJsonDocument* callExported(const char* name, Route route, QJsonDocument* (*body)(QWidget*, const QJsonDocument*),
                            QWidget* mainWindow, const QJsonDocument* args)
{
    const QJsonDocument& document = documentOrEmpty(args);
    logCall(name, mainWindow, document);
    if (!mainWindow)
        return noMainWindow(name);
    return route == Route::Queued ? makeCall(body, mainWindow, &document) : body(mainWindow, &document);
}

QJsonDocument* callExported(const char* name, Route route, QJsonDocument* (*body)(QWidget*), QWidget* mainWindow)
{
    logCall(name);
    if (!mainWindow)
        return noMainWindow(name);
    return route == Route::Queued ? makeCall(body, mainWindow) : body(mainWindow);
}

// Service documents may hold passwords and keys: they are not logged.
QJsonDocument* callExported(const char* name, Route route, QJsonDocument* (*body)(const QJsonDocument*),
                            const QJsonDocument* args)
{
    logCall(name);
    const QJsonDocument& document = documentOrEmpty(args);
    return route == Route::Unmoved ? makeCall(body, &document) : body(&document);
}

QJsonDocument* callExported(const char* name, Route route, QJsonDocument* (*body)())
{
    logCall(name);
    return route == Route::Unmoved ? makeCall(body) : body();
}

} // namespace quillmark::lumen_deck
