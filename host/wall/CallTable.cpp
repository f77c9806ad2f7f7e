#include "host/wall/CallTable.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QLayout>
#include <QWidget>

#include <algorithm>
#include <memory>
#include <optional>

namespace quillmark::lumen_wall {

namespace {

struct Released
{
    void operator()(QJsonDocument* document) const { LD_Release(document); }
};

QJsonValue toValue(const QJsonDocument& document)
{
    return document.isArray() ? QJsonValue(document.array()) : QJsonValue(document.object());
}

Reply answer(QJsonDocument* owned)
{
    const std::unique_ptr<QJsonDocument, Released> document(owned);
    return {document ? toValue(*document) : QJsonValue(QJsonValue::Null), {}};
}

Reply refuse(const QString& why)
{
    return {{}, why};
}

std::optional<int> intArgument(const QJsonDocument& args, const QString& key)
{
    const QJsonValue value = args.object().value(key);
    const double number = value.toDouble();
    const bool isInt =
        value.isDouble() && static_cast<double>(static_cast<qint32>(qBound(-2e9, number, 2e9))) == number;
    return isInt ? std::optional<int>(static_cast<int>(number)) : std::nullopt;
}

// Calls a pointer of each signature with what the document says.
class Caller
{
public:
    Caller(QWidget* wall, const QJsonDocument& args, LD_EventCallback callback)
        : wall_(wall)
        , args_(args)
        , callback_(callback)
    {
    }

    Reply operator()(QJsonDocument* (*f)(QWidget*, const QJsonDocument*)) const { return answer(f(wall_, &args_)); }
    Reply operator()(QJsonDocument* (*f)(QWidget*)) const { return answer(f(wall_)); }
    Reply operator()(QJsonDocument* (*f)(const QJsonDocument*)) const { return answer(f(&args_)); }
    Reply operator()(QJsonDocument* (*f)()) const { return answer(f()); }
    Reply operator()(int (*f)(QWidget*)) const { return {f(wall_), {}}; }

    // LD_Release: results are freed as soon as they are answered, so a program has nothing to free.
    Reply operator()(void (*)(void*)) const { return {QJsonValue::Null, {}}; }

    Reply operator()(void (*f)(QWidget*, int)) const
    {
        return withIndex([&](int index) {
            f(wall_, index);
            return Reply{QJsonValue::Null, {}};
        });
    }
    Reply operator()(bool (*f)(QWidget*, int)) const
    {
        return withIndex([&](int index) { return Reply{f(wall_, index), {}}; });
    }
    Reply operator()(int (*f)(const QWidget*)) const
    {
        return withIndex([&](int index) {
            const QWidget* window = playWindow(wall_, index);
            return window ? Reply{f(window), {}} : refuse("no window has this index");
        });
    }
    Reply operator()(LD_EventCallback (*f)(LD_EventType, LD_EventCallback)) const
    {
        const std::optional<int> type = intArgument(args_, "type");
        const QJsonValue install = args_.object().value("install");
        if (!type || *type < LD_EVENT_SELECTED || *type > LD_EVENT_DRAWING_ENDED || !install.isBool())
            return refuse(R"(wants {"type": 0 to 8, "install": true or false})");
        return {f(static_cast<LD_EventType>(*type), install.toBool() ? callback_ : nullptr) != nullptr, {}};
    }

private:
    template <class Call> Reply withIndex(Call call) const
    {
        const std::optional<int> index = intArgument(args_, "index");
        return index ? call(*index) : refuse(R"(wants {"index": whole number})");
    }

    QWidget* wall_;
    const QJsonDocument& args_;
    LD_EventCallback callback_;
};

struct TakesWidget
{
    template <class Result, class... Rest> bool operator()(Result (*)(QWidget*, Rest...)) const { return true; }
    bool operator()(int (*)(const QWidget*)) const { return true; }
    template <class Other> bool operator()(Other) const { return false; }
};

} // namespace

const std::vector<Function>& functions()
{
    static const std::vector<Function> table{
#define LUMEN_DECK_WD(name, route) {#name, Route::route, name},
#define LUMEN_DECK_W(name, route) {#name, Route::route, name},
#define LUMEN_DECK_D(name, route) {#name, Route::route, name},
#define LUMEN_DECK_N(name, route) {#name, Route::route, name},
#define LUMEN_DECK_OWN(name, route) {#name, Route::route, name},
#include <lumen_deck/functions.def>
    };
    return table;
}

const Function* findFunction(const QString& name)
{
    const auto found = std::find_if(functions().begin(), functions().end(),
                                    [&](const Function& function) { return name == QLatin1String(function.name); });
    return found == functions().end() ? nullptr : &*found;
}

bool belongsToMainThread(const Function& function)
{
    return function.route == Route::Direct && std::visit(TakesWidget(), function.pointer);
}

Reply invoke(const Function& function, QWidget* wall, const QJsonDocument& args, LD_EventCallback callback)
{
    return std::visit(Caller(wall, args, callback), function.pointer);
}

QWidget* cellWidget(QWidget* wall, const QJsonValue& reference)
{
    if (reference.isString())
        return wall->findChild<QWidget*>(reference.toString(), Qt::FindDirectChildrenOnly);
    const QLayoutItem* item = wall->layout() ? wall->layout()->itemAt(reference.toInt(-1)) : nullptr;
    return item ? const_cast<QLayoutItem*>(item)->widget() : nullptr;
}

QWidget* playWindow(QWidget* wall, int index)
{
    const QWidget* cell = cellWidget(wall, index);
    return cell ? cell->findChild<QWidget*>(QString(), Qt::FindDirectChildrenOnly) : nullptr;
}

bool isError(const QJsonValue& result)
{
    return result.toObject().contains("errorCode") && result.toObject().value("errorCode").toInt(-1) != 0;
}

} // namespace quillmark::lumen_wall
