#include "src/transfer_answers.h"

#include "include/tide_pipe/tide_pipe.h"
#include "src/auxiliary.h"

#include <QJsonArray>
#include <QJsonObject>

namespace quillmark::lumen_deck::detail {

TransferRequest::TransferRequest(const QJsonDocument* request)
{
    auxiliary().ParseJson(request, &fields_);
}

QString TransferRequest::path(const char* key) const
{
    return text(key).section(QChar(0), 0, 0);
}

bool isEmptyDocument(const QJsonDocument* document)
{
    return !document || (document->object().isEmpty() && document->array().isEmpty());
}

bool isForbiddenFile(const QString& path)
{
    return path.endsWith(".exe") || path.endsWith(".dat");
}

QJsonDocument* statusAnswer(const char* module, int code)
{
    return new QJsonDocument(QJsonObject{{"errorModule", module}, {"errorCode", code}});
}

QJsonDocument* textAnswer(const char* module, int code)
{
    return new QJsonDocument(QJsonObject{{"errorModule", module}, {"errorCode", code}, {"errorInfo", httpErrorText()}});
}

QJsonDocument* flagAnswer(const char* module, int code, int ret)
{
    return new QJsonDocument(QJsonObject{{"errorModule", module}, {"errorCode", code}, {"ret", ret}});
}

QString httpErrorText()
{
    return QString::fromUtf8(engineText([](char* buffer) { return TP_GetHTTPErrorInfo(buffer, kTextBuffer) == 0; }));
}

} // namespace quillmark::lumen_deck::detail
