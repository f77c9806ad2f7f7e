#pragma once

#include "src/util/Errors.h"

#include <QColor>
#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QVariant>

#include <memory>
#include <utility>

// Typed readers of the fields of a request. Each gives an error or a value; a caller returns the first error it meets,
// before anything has been changed.
namespace quillmark::lumen_deck {

// A null QVariant when the text is no colour that QColor::setNamedColor knows.
QVariant parseColorFromString(const QString& text);

// Lays `source` over `target` and returns a copy of the result.
QJsonObject assign(QJsonObject& target, const QJsonObject& source);

// QVariant::toInt, and 0 for a number that no 64-bit integer holds.
int toInt(const QVariant& value);

namespace detail {

// How a field of type T is read: the word for it in messages, and the value, null when the JSON type does not fit.
template <class T> struct FieldReader;

template <> struct FieldReader<int> {
    static constexpr const char* word = "int";
    static QVariant read(const QJsonValue& value) { return value.toInt(0); }
};
template <> struct FieldReader<QVariant> {
    static constexpr const char* word = "any";
    static QVariant read(const QJsonValue& value) { return value.toVariant(); }
};
template <> struct FieldReader<double> {
    static constexpr const char* word = "double";
    static QVariant read(const QJsonValue& value) { return value.isDouble() ? value.toDouble() : QVariant(); }
};
template <> struct FieldReader<bool> {
    static constexpr const char* word = "bool";
    static QVariant read(const QJsonValue& value) { return value.isBool() ? value.toBool() : QVariant(); }
};
template <> struct FieldReader<QString> {
    static constexpr const char* word = "string";
    static QVariant read(const QJsonValue& value);
};
template <> struct FieldReader<QJsonArray> {
    static constexpr const char* word = "array";
    static QVariant read(const QJsonValue& value) { return value.isArray() ? value.toArray() : QVariant(); }
};
template <> struct FieldReader<QColor> {
    static constexpr const char* word = "color";
    static QVariant read(const QJsonValue& value)
    {
        return value.isString() ? parseColorFromString(value.toString()) : QVariant();
    }
};

template <class T> T fromVariant(const QVariant& value)
{
    return value.value<T>();
}
template <> inline QVariant fromVariant<QVariant>(const QVariant& value)
{
    return value;
}

std::shared_ptr<JsonError> typeMismatch(const QJsonObject& object, const QString& key, const char* word);
std::shared_ptr<JsonError> missingField(const QJsonObject& object, const QString& key);
std::pair<std::shared_ptr<JsonError>, QVariant> parseReference(const QJsonObject& object, const QString& key);

} // namespace detail

// No error and a null QVariant when the key is absent.
template <class T>
std::pair<std::shared_ptr<JsonError>, QVariant> parseOptional(const QJsonObject& object, const QString& key)
{
    const auto found = object.constFind(key);
    if (found == object.constEnd())
        return {};
    const QVariant value = detail::FieldReader<T>::read(*found);
    if constexpr (!std::is_same_v<T, QVariant>) {
        if (!value.isValid())
            return {detail::typeMismatch(object, key, detail::FieldReader<T>::word), {}};
    }
    return {nullptr, value};
}

template <class T>
std::pair<std::shared_ptr<JsonError>, T> parseOptional(const QJsonObject& object, const QString& key,
                                                       const T& defaultValue)
{
    auto [error, value] = parseOptional<T>(object, key);
    if (error || !value.isValid())
        return {error, defaultValue};
    return {nullptr, detail::fromVariant<T>(value)};
}

// As parseOptional, but an absent key is an error; so is JSON null for T = QVariant.
template <class T>
std::pair<std::shared_ptr<JsonError>, QVariant> parseRequired(const QJsonObject& object, const QString& key)
{
    auto [error, value] = parseOptional<T>(object, key);
    if (!error && (!value.isValid() || (std::is_same_v<T, QVariant> && value.isNull())))
        return {detail::missingField(object, key), {}};
    return {error, value};
}

// A window: an int or a QString in the QVariant, null when the key is absent.
template <class T>
std::pair<std::shared_ptr<JsonError>, T> parseReference(const QJsonObject& object, const QString& key)
{
    return detail::parseReference(object, key);
}

} // namespace quillmark::lumen_deck
