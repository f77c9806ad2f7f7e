#pragma once

#include "src/util/Errors.h"

#include <QFile>
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

// What a call answered, and a call with a document.
inline const QJsonObject kNull{{"null", true}};

inline QJsonObject objectOf(QJsonDocument* answer)
{
    return answer ? std::unique_ptr<QJsonDocument>(answer)->object() : kNull;
}

inline QJsonObject call(QJsonDocument* (*function)(const QJsonDocument*), const QByteArray& request = "{}")
{
    const QJsonDocument document = json(request);
    return objectOf(function(&document));
}

// "" where there is no such file.
inline QByteArray bytesOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// "" for no error.
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
