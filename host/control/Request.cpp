#include "host/control/Request.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QStringList>

namespace quillmark::lumen_wall {

namespace {

using What = decltype(Request::what);

What parseArgs(const QJsonObject& object, CallRequest request)
{
    const QJsonValue args = object.value("args");
    if (args.isArray())
        request.args = QJsonDocument(args.toArray());
    else if (args.isObject() || args.isUndefined())
        request.args = QJsonDocument(args.toObject());
    else
        return BadRequest{R"("args" is an object or an array)"};
    return request;
}

What parseCall(const QJsonObject& object)
{
    const QString name = object.value("call").toString();
    const QString thread = object.value("thread").toString(object.contains("thread") ? QString() : "main");
    const Function* function = findFunction(name);
    if (!function)
        return BadRequest{QStringLiteral("no function is named \"%1\"").arg(name)};
    if (thread != "main" && thread != "worker")
        return BadRequest{R"("thread" is "main" or "worker")"};
    if (thread == "worker" && belongsToMainThread(*function))
        return BadRequest{name + " is called on the main thread only"};
    return parseArgs(object, {function, {}, thread == "worker"});
}

What parseStatus(const QJsonObject&)
{
    return StatusRequest{};
}

What parseScreenshot(const QJsonObject& object)
{
    const QString path = object.value("screenshot").toString();
    if (path.isEmpty())
        return BadRequest{R"("screenshot" is the path of a picture file)"};
    return ScreenshotRequest{path};
}

What parseQuit(const QJsonObject&)
{
    return QuitRequest{};
}

struct Verb
{
    const char* key;
    QStringList companions; // the keys that may stand beside it and "id"
    What (*parse)(const QJsonObject&);
};

const std::vector<Verb>& verbs()
{
    static const std::vector<Verb> table{
        {"call", {"args", "thread"}, &parseCall},
        {"status", {}, &parseStatus},
        {"screenshot", {}, &parseScreenshot},
        {"quit", {}, &parseQuit},
    };
    return table;
}

QString strangeKey(const QJsonObject& object, const Verb& verb)
{
    for (const QString& key : object.keys()) {
        if (key != "id" && key != verb.key && !verb.companions.contains(key))
            return key;
    }
    return {};
}

What parseObject(const QJsonObject& object)
{
    for (const Verb& verb : verbs()) {
        if (!object.contains(verb.key))
            continue;
        const QString strange = strangeKey(object, verb);
        return strange.isNull() ? verb.parse(object)
                                : BadRequest{QStringLiteral("the key \"%1\" has no meaning here").arg(strange)};
    }
    return BadRequest{R"(one of "call", "status", "screenshot" and "quit" must be there)"};
}

} // namespace

Request parseRequest(const QByteArray& line)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(line, &error);
    if (error.error != QJsonParseError::NoError)
        return {QJsonValue::Null,
                BadRequest{QStringLiteral("no JSON: %1 at %2").arg(error.errorString()).arg(error.offset)}};
    if (!document.isObject())
        return {QJsonValue::Null, BadRequest{"a line is one JSON object"}};
    const QJsonObject object = document.object();
    const QJsonValue id = object.value("id");
    return {id.isUndefined() ? QJsonValue(QJsonValue::Null) : id, parseObject(object)};
}

} // namespace quillmark::lumen_wall
