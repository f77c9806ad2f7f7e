#include "host/wall/Deck.h"

#include "host/wall/ErrorText.h"

#include <QPointer>
#include <QThread>

#include <utility>

namespace quillmark::lumen_wall {

Deck::Deck(QWidget* wall)
    : wall_(wall)
    , cells_(wall)
{
    connect(&events_, &EventHub::happened, this, &Deck::onEvent);
    connect(&cells_, &CellBook::layoutChanged, this, [this] { select(0); });
}

// The calls of the end are told to nobody: who looked at the wall may be half gone.
Deck::~Deck()
{
    apart_.reset();
    blockSignals(true);
    cells_.blockSignals(true);
    events_.blockSignals(true);
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
        later([this, name, object = args.object(), result = reply.result] { note(name, object, result); });
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

void Deck::askApart(const char* function, const QJsonObject& args, QObject* receiver,
                    std::function<void(const QJsonValue&)> then)
{
    apart_->run([this, function, args, guard = QPointer<QObject>(receiver), then = std::move(then)] {
        later([guard, then, answer = ask(function, args)] {
            if (guard)
                then(answer);
        });
    });
}

void Deck::later(std::function<void()> action)
{
    const std::lock_guard guard(lock_);
    later_.push_back(std::move(action));
    if (later_.size() == 1)
        QMetaObject::invokeMethod(this, &Deck::runLater, Qt::QueuedConnection);
}

void Deck::runLater()
{
    std::vector<std::function<void()>> actions;
    {
        const std::lock_guard guard(lock_);
        actions.swap(later_);
    }
    for (const auto& action : actions)
        action();
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

QString authOf(const QString& user, const QString& password)
{
    return user.isEmpty() ? QString() : user + ':' + password;
}

} // namespace quillmark::lumen_wall
