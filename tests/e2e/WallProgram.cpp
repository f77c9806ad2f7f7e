#include "tests/e2e/WallProgram.h"

#include "tests/support/Journal.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

constexpr int kAnswerMs = 30000;

QString scratch(const QString& name)
{
    static const QTemporaryDir folder;
    return folder.filePath(name);
}

} // namespace

QString programPath(const QString& name)
{
    return QCoreApplication::applicationDirPath() + "/" + name;
}

QString clip(const QString& name, const QString& filter, int seconds)
{
    const QString path = scratch(name + ".mp4");
    if (QFile::exists(path))
        return path;
    const QStringList source{"-nostdin", "-v", "error", "-f", "lavfi", "-t", QString::number(seconds), "-i", filter};
    const QString film = "-c:v libx264 -preset ultrafast -bf 0 -g 25 -pix_fmt yuv420p";
    EXPECT_EQ(QProcess::execute("ffmpeg", source + film.split(' ') + QStringList{path}), 0);
    return path;
}

WallProgram::WallProgram(const QStringList& options)
{
    process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process_.start(programPath("lumen-wall"), QStringList{"--control", "--log", "quiet"} + options);
    EXPECT_TRUE(process_.waitForStarted());
}

WallProgram::~WallProgram()
{
    if (process_.state() == QProcess::NotRunning)
        return;
    EXPECT_TRUE(end()) << "the program does not end with its input";
    process_.kill();
    process_.waitForFinished();
}

QJsonValue WallProgram::call(const QString& function, const QJsonValue& args, const QString& thread)
{
    const QJsonObject answer = request({{"call", function}, {"args", args}, {"thread", thread}});
    return answer.contains("result") ? answer.value("result") : answer;
}

QJsonObject WallProgram::request(QJsonObject line)
{
    return answer(sendWithId(std::move(line)));
}

int WallProgram::sendWithId(QJsonObject line)
{
    line.insert("id", ++lastId_);
    send(QJsonDocument(line).toJson(QJsonDocument::Compact));
    return lastId_;
}

int WallProgram::sendCall(const QString& function, const QJsonObject& args, const QString& thread)
{
    return sendWithId({{"call", function}, {"args", args}, {"thread", thread}});
}

QImage WallProgram::screenshot()
{
    const QString path = scratch("screenshot.png");
    EXPECT_EQ(request({{"screenshot", path}}).value("result"), QJsonValue(QJsonValue::Null));
    return QImage(path);
}

void WallProgram::send(const QByteArray& line)
{
    const QJsonObject request = QJsonDocument::fromJson(line).object();
    sent_[request.value("id").toInt()] = request;
    process_.write(line + '\n');
    process_.waitForBytesWritten();
}

QJsonObject WallProgram::answer(const QJsonValue& id)
{
    const auto found = take([=](const QJsonObject& line) { return line.value("id") == id; }, kAnswerMs);
    EXPECT_TRUE(found) << "no answer to " << id.toInt();
    return found.value_or(QJsonObject());
}

bool WallProgram::sawEvent(int type, int cell, int code, int waitMs)
{
    const auto matches = [=](const QJsonObject& line) {
        const QJsonObject document = line.value("document").toObject();
        return line.value("event") == QJsonValue(type) && document.value("wndIndex") == QJsonValue(cell) &&
               document.value("eventType") == QJsonValue(code);
    };
    return take(matches, waitMs).has_value();
}

bool WallProgram::end(int waitMs)
{
    process_.closeWriteChannel();
    const bool ended = process_.waitForFinished(waitMs);
    read();
    return ended && process_.exitStatus() == QProcess::NormalExit && process_.exitCode() == 0;
}

std::optional<QJsonObject> WallProgram::take(const Test& test, int waitMs)
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

void WallProgram::read()
{
    while (process_.canReadLine()) {
        const QJsonDocument line = QJsonDocument::fromJson(process_.readLine());
        brokenLines_ += line.isObject() ? 0 : 1;
        lines_.append(line.object());
        keepInJournal(line.object());
    }
}

void WallProgram::keepInJournal(const QJsonObject& line)
{
    journal::write({{"line", line}});
    const QJsonObject request = sent_.value(line.value("id").toInt());
    const QJsonValue result = line.value("result");
    if (line.contains("event"))
        journal::write({{"event", line.value("event")}, {"document", line.value("document")}});
    else if (line.contains("result") && request.contains("status"))
        journal::write({{"status", result}});
    else if (line.contains("result") && request.contains("call"))
        journal::write({{"call", request.value("call")},
                        {"request", request.contains("args") ? request.value("args") : QJsonObject()},
                        {"answer", result}});
}
