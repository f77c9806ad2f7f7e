#pragma once

#include "tests/support/Journal.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QHash>
#include <QImage>
#include <QJsonArray>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <gmock/gmock.h>
#include <optional>

inline QString scratch(const QString& name)
{
    static const QTemporaryDir folder;
    return folder.filePath(name);
}

inline QString programPath(const QString& name)
{
    return QCoreApplication::applicationDirPath() + "/" + name;
}

// Clips for the tests, made once by the ffmpeg tool. `filter` is a lavfi source.
inline QString clip(const QString& name, const QString& filter, int seconds)
{
    const QString path = scratch(name + ".mp4");
    if (QFile::exists(path))
        return path;
    const QStringList source{"-nostdin", "-v", "error", "-f", "lavfi", "-t", QString::number(seconds), "-i", filter};
    const QString film = "-c:v libx264 -preset ultrafast -bf 0 -g 25 -pix_fmt yuv420p";
    EXPECT_EQ(QProcess::execute("ffmpeg", source + film.split(' ') + QStringList{path}), 0);
    return path;
}

inline bool eventually(const std::function<bool()>& condition)
{
    return QTest::qWaitFor(condition, 15000);
}

// lumen-wall as a program sees it: lines in, lines out.
class WallProgram
{
public:
    explicit WallProgram(const QStringList& options = {})
    {
        process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process_.start(programPath("lumen-wall"), QStringList{"--control", "--log", "quiet"} + options);
        EXPECT_TRUE(process_.waitForStarted());
    }
    ~WallProgram()
    {
        if (process_.state() == QProcess::NotRunning)
            return;
        EXPECT_TRUE(end()) << "the program does not end with its input";
        process_.kill();
        process_.waitForFinished();
    }

    // Sends a line and gives the answer with its id. A call's `result` is unwrapped; an error line comes whole.
    QJsonValue call(const QString& function, const QJsonValue& args = QJsonObject(), const QString& thread = "main")
    {
        const QJsonObject answer = request({{"call", function}, {"args", args}, {"thread", thread}});
        return answer.contains("result") ? answer["result"] : answer;
    }
    QJsonObject request(QJsonObject line) { return answer(sendWithId(std::move(line))); }
    QJsonObject status() { return request({{"status", true}})["result"].toObject(); }
    QImage screenshot()
    {
        const QString path = scratch("screenshot.png");
        EXPECT_EQ(request({{"screenshot", path}})["result"], QJsonValue(QJsonValue::Null));
        return QImage(path);
    }

    void send(const QByteArray& line)
    {
        const QJsonObject request = QJsonDocument::fromJson(line).object();
        sent_[request["id"].toInt()] = request;
        process_.write(line + '\n');
        process_.waitForBytesWritten();
    }
    int sendCall(const QString& function, const QJsonObject& args, const QString& thread) // gives the id
    {
        return sendWithId({{"call", function}, {"args", args}, {"thread", thread}});
    }
    QJsonObject answer(const QJsonValue& id) // waits for it
    {
        const auto found = take([=](const QJsonObject& line) { return line["id"] == id; }, 30000);
        EXPECT_TRUE(found) << "no answer to " << id.toInt();
        return found.value_or(QJsonObject());
    }
    bool sawEvent(int type, int cell, int code, int waitMs = 15000) // once for each event
    {
        const auto matches = [=](const QJsonObject& line) {
            const QJsonValue document = line["document"];
            return line["event"] == type && document["wndIndex"] == cell && document["eventType"] == code;
        };
        return take(matches, waitMs).has_value();
    }
    const QList<QJsonObject>& lines() const { return lines_; }

    bool end() // closes the input; true: the program ended with 0
    {
        process_.closeWriteChannel();
        const bool ended = process_.waitForFinished(15000);
        read();
        return ended && process_.exitStatus() == QProcess::NormalExit && process_.exitCode() == 0;
    }
    QProcess& process() { return process_; }
    int brokenLines() const { return brokenLines_; }

private:
    int sendWithId(QJsonObject line)
    {
        line["id"] = ++lastId_;
        send(QJsonDocument(line).toJson(QJsonDocument::Compact));
        return lastId_;
    }

    std::optional<QJsonObject> take(const std::function<bool(const QJsonObject&)>& test, int waitMs)
    {
        QElapsedTimer clock;
        clock.start();
        for (;;) {
            read();
            for (int i = 0; i < lines_.size(); ++i) {
                if (test(lines_[i]))
                    return lines_.takeAt(i);
            }
            const auto left = static_cast<int>(waitMs - clock.elapsed());
            if (left <= 0 || (process_.state() == QProcess::NotRunning && !process_.canReadLine()))
                return std::nullopt;
            process_.waitForReadyRead(std::min(left, 200));
        }
    }

    void read()
    {
        while (process_.canReadLine()) {
            const QJsonDocument line = QJsonDocument::fromJson(process_.readLine());
            brokenLines_ += line.isObject() ? 0 : 1;
            lines_.append(line.object());
            keepInJournal(line.object());
        }
    }

    void keepInJournal(const QJsonObject& line)
    {
        journal::write({{"line", line}});
        const QJsonObject request = sent_.value(line["id"].toInt());
        if (line.contains("event"))
            journal::write({{"event", line["event"]}, {"document", line["document"]}});
        else if (line.contains("result") && request.contains("status"))
            journal::write({{"status", line["result"]}});
        else if (line.contains("result") && request.contains("call"))
            journal::write({{"call", request["call"]},
                            {"request", request.contains("args") ? request["args"] : QJsonObject()},
                            {"answer", line["result"]}});
    }

    QProcess process_;
    QList<QJsonObject> lines_; // not yet asked for
    QHash<int, QJsonObject> sent_;
    int lastId_ = 0;
    int brokenLines_ = 0;
};
