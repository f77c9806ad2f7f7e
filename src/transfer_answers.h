#pragma once

#include <QJsonDocument>
#include <QMap>
#include <QString>
#include <QVariant>

// What uploads and downloads share: how a request is read and how an answer looks.
namespace quillmark::lumen_deck::detail {

constexpr int kRefused = -1;

// The fields of a request in the flat form, an absent one as nothing, 0 or an empty text.
class TransferRequest
{
public:
    explicit TransferRequest(const QJsonDocument* request);

    bool isEmpty() const { return fields_.isEmpty(); }
    QByteArray bytes(const char* key) const { return fields_.value(key).toByteArray(); }
    QString text(const char* key) const { return fields_.value(key).toString(); }
    int number(const char* key) const { return fields_.value(key).toInt(); }
    QString path(const char* key) const; // up to its first zero byte, as far as the engine reads it

private:
    QMap<QString, QVariant> fields_;
};

// `{}` and `[]` are as empty as no document.
bool isEmptyDocument(const QJsonDocument* document);

// Programs and their data are never sent to a device.
bool isForbiddenFile(const QString& path);

QJsonDocument* statusAnswer(const char* module, int code);
QJsonDocument* textAnswer(const char* module, int code); // with the server's words about the last request
QJsonDocument* flagAnswer(const char* module, int code, int ret);

// The server's words about the last request of this thread.
QString httpErrorText();

// A text that the engine writes into a buffer of the size it is promised.
constexpr int kTextBuffer = 102400;
template <class Fill> QByteArray engineText(Fill fill)
{
    QByteArray buffer(kTextBuffer + 1, '\0'); // one more, so that the text ends whatever the engine writes
    const bool isFilled = fill(buffer.data());
    return isFilled ? QByteArray(buffer.constData()) : QByteArray();
}

} // namespace quillmark::lumen_deck::detail
