#include "host/wall/ErrorText.h"

#include <array>
#include <cstdlib>

namespace quillmark::lumen_wall {

namespace {

constexpr std::array kEngineReasons = {
    "",
    "a bad argument",
    "no such id",
    "not supported",
    "wrong state",
    "no window",
    "no display",
    "cannot be opened",
    "no picture",
    "cannot be written",
    "no sound",
    "the server refused it",
    "log-in refused",
    "time-out",
    "protection failed",
    "too long",
    "no memory",
    "internal error",
};

constexpr std::array kTransferReasons = {
    "",
    "failed",
    "the address or the log-in cannot be sent",
    "cannot connect",
    "the server's certificate is not trusted",
    "log-in refused",
    "not found",
    "refused by the server",
    "error of the server",
    "time-out",
    "the line was cut",
    "the file cannot be read or written",
    "redirected too often",
    "the device took the file and failed",
};

template <size_t size> QString reason(const std::array<const char*, size>& table, int code)
{
    return code >= 0 && static_cast<size_t>(code) < size ? QString(table[static_cast<size_t>(code)]) : QString();
}

} // namespace

QString errorText(const QString& function, const QJsonObject& error)
{
    const QString code = QStringLiteral("error %1").arg(error.value("errorCode").toInt());
    const QString message = error.value("errorMessage").toString(function + ": " + code);
    const QString reason = engineReason(error.value("tide_pipe_error_code").toInt());
    return reason.isEmpty() ? message : message.section(',', 0, 0) + ": " + reason;
}

QString engineReason(int code)
{
    return reason(kEngineReasons, code);
}

QString transferReason(int status)
{
    const QString text = reason(kTransferReasons, std::abs(status));
    return text.isEmpty() ? QStringLiteral("error %1").arg(status) : text;
}

} // namespace quillmark::lumen_wall
