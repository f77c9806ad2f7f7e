#include "src/local_info.h"

#include "include/tide_pipe/tide_pipe.h"

#include <QJsonObject>
#include <QMap>
#include <QVariant>

#include <array>

namespace {

constexpr int kBufferSize = 1024; // what the engine is promised

using Protection = decltype(&TP_Encrypt);

struct Protected
{
    int result = -1;
    QByteArray text;
};

Protected callEngine(Protection operation, int type, const QByteArray& text, bool encrypted)
{
    std::array<char, kBufferSize + 1> out{}; // one more, so that the text ends whatever the engine writes
    int length = kBufferSize;
    const int result = operation(type, text.constData(), out.data(), &length, 0, encrypted);
    return {result, QByteArray(out.data())};
}

QJsonDocument* failed(const char* module, int code)
{
    return new QJsonDocument(QJsonObject{{"errorModule", module}, {"errorCode", code}});
}

QJsonDocument* succeeded(const auxiliary& tools, const char* key, const QString& text)
{
    QJsonObject answer{{key, text}};
    tools.doresult(answer);
    return new QJsonDocument(answer);
}

} // namespace

QJsonDocument* LocalInfo::SetSecretKey(const QJsonDocument* request) const
{
    QMap<QString, QVariant> fields;
    tools_.ParseJson(request, &fields);
    const int result = TP_SetSecretKey(fields["keyType"].toInt(), fields["key"].toByteArray().constData());
    return result < 0 ? failed("SetSecretKey", result) : nullptr;
}

void LocalInfo::SetOriginalString(const QJsonDocument* request)
{
    QMap<QString, QVariant> fields;
    tools_.ParseJson(request, &fields);
    const std::lock_guard lock(lock_);
    encrypted_ = fields["encrypted"].toBool();
    originalString_ = fields["key"].toString();
}

QJsonDocument* LocalInfo::GetEncryptString(const QJsonDocument* request) const
{
    QMap<QString, QVariant> fields;
    tools_.ParseJson(request, &fields);
    const bool encrypted = [this] {
        const std::lock_guard lock(lock_);
        return encrypted_;
    }();
    const QByteArray text = fields["originalKey"].toString().toLocal8Bit();
    const Protected done = callEngine(TP_Encrypt, fields["type"].toInt(), text, encrypted);
    if (done.result != 0)
        return failed("GetEncryptString", done.result);
    return succeeded(tools_, "encryptString", QString::fromLatin1(done.text));
}

// The recovered text is in the encoding that GetEncryptString took it in.
QJsonDocument* LocalInfo::GetDecryptString(const QJsonDocument* request) const
{
    QMap<QString, QVariant> fields;
    tools_.ParseJson(request, &fields);
    const QByteArray text = fields["key"].toString().toLocal8Bit();
    if (text.isEmpty())
        return failed("GetDecryptString", -1);
    const Protected done = callEngine(TP_Decrypt, fields["type"].toInt(), text, fields["encrypted"].toBool());
    if (done.result != 0)
        return failed("GetDecryptString", done.result);
    return succeeded(tools_, "decryptString", QString::fromLocal8Bit(done.text));
}
