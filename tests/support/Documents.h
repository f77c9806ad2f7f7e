#pragma once

#include "src/util/Errors.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <memory>
#include <string>

// Documents as text, and what the library says of bad ones.
namespace documents {

inline QJsonDocument json(const QByteArray& text)
{
    return QJsonDocument::fromJson(text);
}

inline QJsonObject object(const QByteArray& text)
{
    return json(text).object();
}

template <class Error> std::string messageOf(const Error& error)
{
    return error ? error->toJson()["errorMessage"].toString().toStdString() : "";
}

inline std::string missing(const std::string& key)
{
    return "an required field is missing from json object, required key is " + key;
}

inline std::string mismatch(const std::string& key, const std::string& type)
{
    return "error retrieving an optional field " + key + ", type mismatch, required type is " + type;
}

} // namespace documents
