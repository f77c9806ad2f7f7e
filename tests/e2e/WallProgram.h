#pragma once

#include <QHash>
#include <QImage>
#include <QJsonArray>
#include <QJsonObject>
#include <QProcess>
#include <QStringList>
#include <QTest>

#include <functional>
#include <optional>

// lumen-wall as a program sees it: lines in, lines out.
class WallProgram
{
public:
    explicit WallProgram(const QStringList& options = {});
    ~WallProgram();

    // Sends a line and gives the answer with its id. A call's `result` is unwrapped; an error line comes whole.
    QJsonValue call(const QString& function, const QJsonValue& args = QJsonObject(), const QString& thread = "main");
    QJsonObject request(QJsonObject line);
    QJsonObject status() { return request({{"status", true}}).value("result").toObject(); }
    QImage screenshot();

    void send(const QByteArray& line);
    int sendCall(const QString& function, const QJsonObject& args, const QString& thread); // gives the id
    QJsonObject answer(const QJsonValue& id);                                              // waits for it
    bool sawEvent(int type, int cell, int code, int waitMs = 15000);                       // once for each event
    const QList<QJsonObject>& lines() const { return lines_; }

    bool end(int waitMs = 15000); // closes the input; true: the program ended with 0
    QProcess& process() { return process_; }
    int brokenLines() const { return brokenLines_; }

private:
    using Test = std::function<bool(const QJsonObject&)>;
    int sendWithId(QJsonObject line);
    std::optional<QJsonObject> take(const Test& test, int waitMs);
    void read();
    void keepInJournal(const QJsonObject& line);

    QProcess process_;
    QList<QJsonObject> lines_; // not yet asked for
    QHash<int, QJsonObject> sent_;
    int lastId_ = 0;
    int brokenLines_ = 0;
};

// Clips for the tests, made once by the ffmpeg tool. `filter` is a lavfi source.
QString clip(const QString& name, const QString& filter, int seconds);
QString programPath(const QString& name);

// True when `condition` holds within the time.
inline bool eventually(const std::function<bool()>& condition)
{
    return QTest::qWaitFor(condition, 15000);
}
