#include "host/wall/Deck.h"

#include <QThread>

namespace quillmark::lumen_wall {

namespace {

// Errors of windows have a message, those of the services a module and a code.
QString errorText(const QString& function, const QJsonObject& error)
{
    const QString code = QStringLiteral("error %1").arg(error.value("errorCode").toInt());
    return error.value("errorMessage").toString(function + ": " + code);
}

} // namespace

Deck::Deck(QWidget* wall)
    : wall_(wall)
    , cells_(wall)
{
    connect(&events_, &EventHub::happened, this, &Deck::onEvent);
    connect(&cells_, &CellBook::layoutChanged, this, [this] { select(0); });
}

Deck::~Deck()
{
    call("LD_StopRealPlayAll");
    call("LD_Uninitialize");
}

Reply Deck::invoke(const Function& function, const QJsonDocument& args)
{
    const Reply reply = lumen_wall::invoke(function, wall_, args, &EventHub::receive);
    const QString name = function.name;
    if (QThread::currentThread() == thread())
        note(name, args.object(), reply.result);
    else
        QMetaObject::invokeMethod(
            this, [this, name, object = args.object(), result = reply.result] { note(name, object, result); },
            Qt::QueuedConnection);
    return reply;
}

void Deck::start()
{
    call("LD_Initialize");
}

QJsonValue Deck::ask(const char* function, const QJsonObject& args) const
{
    return lumen_wall::invoke(*findFunction(function), wall_, QJsonDocument(args), &EventHub::receive).result;
}

QJsonValue Deck::call(const char* function, const QJsonObject& args)
{
    return invoke(*findFunction(function), QJsonDocument(args)).result;
}

void Deck::note(const QString& function, const QJsonObject& args, const QJsonValue& result)
{
    if (isError(result))
        emit failed(errorText(function, result.toObject()));
    else
        cells_.note(function, args);
}

void Deck::onEvent(int type, const QJsonObject& document)
{
    if (type == LD_EVENT_SELECTED)
        select(document.value("wndInfo").toObject().value("wndIndex").toInt());
}

void Deck::select(int index)
{
    selected_ = index;
    emit selectionChanged();
}

} // namespace quillmark::lumen_wall
