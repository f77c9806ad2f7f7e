#pragma once

#include "host/wall/CallTable.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonValue>
#include <QString>

#include <variant>

// One line of the control channel, read but not carried out. The language is told in docs/control.md.
namespace quillmark::lumen_wall {

struct CallRequest
{
    const Function* function;
    QJsonDocument args;
    bool onWorker;
};
struct StatusRequest
{
};
struct ScreenshotRequest
{
    QString path;
};
struct QuitRequest
{
};
struct BadRequest
{
    QString why;
};

struct Request
{
    QJsonValue id; // whatever the line says, null if it says nothing
    std::variant<BadRequest, CallRequest, StatusRequest, ScreenshotRequest, QuitRequest> what;
};

Request parseRequest(const QByteArray& line);

} // namespace quillmark::lumen_wall
