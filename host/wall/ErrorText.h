#pragma once

#include <QJsonObject>
#include <QString>

// What the library's answers mean to a person.
namespace quillmark::lumen_wall {

// Of a failed call: errors of windows have a message, those of the services a module and a code. Of what the engine has
// refused, the reason stands in place of its numbers.
QString errorText(const QString& function, const QJsonObject& error);

// Why the stream engine refused, by the number in `errorCode`; empty for a number without a meaning.
QString engineReason(int code);

// Why a transfer has failed: its status, or the code of the call that waited for it, which is the status negated.
QString transferReason(int status);

} // namespace quillmark::lumen_wall
