#include "src/util/JsonUtil.h"

#include <cmath>

namespace quillmark::lumen_deck {

QVariant parseColorFromString(const QString& text)
{
    QColor color;
    color.setNamedColor(text);
    return color.spec() != QColor::Invalid ? QVariant(color) : QVariant();
}

QJsonObject assign(QJsonObject& target, const QJsonObject& source)
{
    for (auto field = source.constBegin(); field != source.constEnd(); ++field)
        target[field.key()] = field.value();
    return target;
}

int toInt(const QVariant& value)
{
    constexpr double beyond = 9.0e18;
    const bool fits = value.type() != QVariant::Double || std::abs(value.toDouble()) < beyond;
    return fits ? value.toInt() : 0;
}

namespace detail {

// An empty text is a value, and QVariant(QString()) would count as none.
QVariant FieldReader<QString>::read(const QJsonValue& value)
{
    if (!value.isString())
        return {};
    const QString text = value.toString();
    return text.isNull() ? QVariant(QString("")) : QVariant(text);
}

std::shared_ptr<JsonError> typeMismatch(const QJsonObject& object, const QString& key, const char* word)
{
    return constructJsonError("error retrieving an optional field " + key + ", type mismatch, required type is " + word,
                              object, LUMEN_HERE);
}

std::shared_ptr<JsonError> missingField(const QJsonObject& object, const QString& key)
{
    return constructJsonError("an required field is missing from json object, required key is " + key, object,
                              LUMEN_HERE);
}

std::pair<std::shared_ptr<JsonError>, QVariant> parseReference(const QJsonObject& object, const QString& key)
{
    const QJsonValue value = object.value(key);
    if (value.isUndefined())
        return {};
    if (value.isDouble())
        return {nullptr, QVariant(value.toInt(0))};
    if (value.isString())
        return {nullptr, QVariant(value.toString())};
    const QString message = QStringLiteral("error parsing refence key %1, type mismatch, type required is %2")
                                .arg(key, QStringLiteral("int, std::size_t or QString"));
    return {constructJsonError(message, object, LUMEN_HERE), {}};
}

} // namespace detail

} // namespace quillmark::lumen_deck
