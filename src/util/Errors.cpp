#include "src/util/Errors.h"

#include <utility>

namespace quillmark::lumen_deck {

// A compiler cache may have made the path relative to the build folder.
QString sourceModule(const char* file)
{
    QString path = QString::fromUtf8(file);
    while (path.startsWith(QLatin1String("../")))
        path.remove(0, 3);
    const int dot = path.lastIndexOf(QLatin1Char('.'));
    return dot > path.lastIndexOf(QLatin1Char('/')) ? path.left(dot) : path;
}

ErrorBase::ErrorBase(int code, QString name, QString message, QString module, int line)
    : code_(code)
    , name_(std::move(name))
    , message_(std::move(message))
    , module_(std::move(module))
    , line_(line)
{
}

QString ErrorBase::toString() const
{
    return QStringLiteral("Error %1 \n    error message: %2 \n....occurred at file %3 \n    at line %4\n")
        .arg(name_, message_, module_, QString::number(line_));
}

QJsonDocument ErrorBase::toJson() const
{
    return QJsonDocument(QJsonObject{{"errorCode", code_},
                                     {"errorName", name_},
                                     {"errorMessage", message_},
                                     {"errorLine", line_},
                                     {"errorModule", module_}});
}

JsonError::JsonError(const QString& message, QString jsonText, const QString& module, int line)
    : ErrorBase(500, QStringLiteral("json error"), message, module, line)
    , jsonText_(std::move(jsonText))
{
}

QString JsonError::toString() const
{
    return ErrorBase::toString() + QStringLiteral("    error json string: ") + jsonText_;
}

QJsonDocument JsonError::toJson() const
{
    QJsonObject object = ErrorBase::toJson().object();
    object["json_string"] = jsonText_;
    return QJsonDocument(object);
}

InvalidStatusError::InvalidStatusError(const QString& message, const QString& module, int line)
    : ErrorBase(501, QStringLiteral("invalid status error"), message, module, line)
{
}

ReferenceError::ReferenceError(const QString& message, const QString& module, int line)
    : ErrorBase(502, QStringLiteral("reference error"), message, module, line)
{
}

TidePipeError::TidePipeError(const QString& message, const QString& module, int line, int engineCode)
    : ErrorBase(503, QStringLiteral("tide_pipe error"), message, module, line)
    , engineCode_(engineCode)
{
}

QString TidePipeError::toString() const
{
    return ErrorBase::toString() + QStringLiteral("    tide_pipe error code is %1").arg(engineCode_);
}

QJsonDocument TidePipeError::toJson() const
{
    QJsonObject object = ErrorBase::toJson().object();
    object["errorCode"] = engineCode_;
    object["tide_pipe_error_code"] = engineCode_;
    return QJsonDocument(object);
}

} // namespace quillmark::lumen_deck
