#pragma once

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>

#include <memory>

namespace quillmark::lumen_deck {

// The path of a source file as it stands in error documents: below the tree's root, without its ending.
QString sourceModule(const char* file);

#define LUMEN_HERE ::quillmark::lumen_deck::sourceModule(__FILE__), __LINE__

// Errors are values behind std::shared_ptr; an empty pointer means success. Immutable once made.
class ErrorBase {
public:
    ErrorBase(int code, QString name, QString message, QString module, int line);
    ErrorBase(const ErrorBase&) = default;
    ErrorBase& operator=(const ErrorBase&) = default;
    virtual ~ErrorBase() = default;

    virtual QString toString() const;
    virtual QJsonDocument toJson() const;

private:
    int code_;
    QString name_;
    QString message_;
    QString module_;
    int line_;
};

// A document that does not say what it should. Made by constructJsonError.
class JsonError : public ErrorBase {
public:
    JsonError(const QString& message, QString jsonText, const QString& module, int line);

    QString toString() const override;
    QJsonDocument toJson() const override;

private:
    QString jsonText_;
};

// The operation does not fit the window's state.
class InvalidStatusError : public ErrorBase {
public:
    InvalidStatusError(const QString& message, const QString& module, int line);
};

// A window that cannot be found.
class ReferenceError : public ErrorBase {
public:
    ReferenceError(const QString& message, const QString& module, int line);
};

// The stream engine refused. `engineCode` is its last error; the host sees it in place of the class code.
class TidePipeError : public ErrorBase {
public:
    TidePipeError(const QString& message, const QString& module, int line, int engineCode);

    QString toString() const override;
    QJsonDocument toJson() const override;

private:
    int engineCode_;
};

// `Json` is QJsonDocument, QJsonObject or QJsonArray: the offending text, indented, up to its first NUL byte.
template <class Json>
std::shared_ptr<JsonError> constructJsonError(const QString& message, const Json& json, const QString& module, int line)
{
    const QByteArray text = QJsonDocument(json).toJson();
    return std::make_shared<JsonError>(message, QString::fromUtf8(text.constData()), module, line);
}

} // namespace quillmark::lumen_deck
