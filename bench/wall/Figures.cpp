#include "bench/wall/Figures.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QProcess>

#include <cstdio>

#include <sys/resource.h>

namespace bench {

namespace {

double seconds(const timeval& time)
{
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

QByteArray statusValue(const char* key)
{
    QFile status("/proc/self/status");
    if (!status.open(QIODevice::ReadOnly))
        return {};
    const QList<QByteArray> lines = status.readAll().split('\n');
    for (const QByteArray& line : lines) {
        if (line.startsWith(key))
            return line.mid(line.indexOf(':') + 1).replace("kB", "").trimmed();
    }
    return {};
}

} // namespace

QJsonObject Figures::toJson() const
{
    return {{"cpuPerFrame", cpuPerFrame}, {"shownShare", shownShare},   {"threads", threads},
            {"memory", memory},           {"hiddenShare", hiddenShare}, {"start", start}};
}

Figures Figures::fromJson(const QJsonObject& json)
{
    return {json["cpuPerFrame"].toDouble(), json["shownShare"].toDouble(),  json["threads"].toInt(),
            json["memory"].toDouble(),      json["hiddenShare"].toDouble(), json["start"].toDouble()};
}

void print(const Figures& figures)
{
    std::puts(QJsonDocument(figures.toJson()).toJson(QJsonDocument::Compact).constData());
}

double processCpuSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

double residentMegabytes()
{
    return statusValue("VmRSS").toDouble() / 1024.0;
}

int threadCount()
{
    return statusValue("Threads").toInt();
}

QString clip(int framesPerSecond, QSize size)
{
    const QDir folder(QCoreApplication::applicationDirPath());
    const QString path = folder.filePath(QString("wall-%1-%2.mp4").arg(size.height()).arg(framesPerSecond));
    if (QFile::exists(path))
        return path;
    const QString part = path + ".part";
    const QString picture =
        QString("testsrc2=size=%1x%2:rate=%3:duration=60").arg(size.width()).arg(size.height()).arg(framesPerSecond);
    // Noise and bits as a camera has them: decoding must cost what it costs there.
    const QString bits = QString("%1k").arg(framesPerSecond * size.width() * size.height() / 4055);
    QProcess::execute("ffmpeg", {"-y",       "-loglevel", "error",
                                 "-f",       "lavfi",     "-i",
                                 picture,    "-vf",       "noise=alls=7:allf=t,format=yuv420p",
                                 "-c:v",     "libx264",   "-preset",
                                 "veryfast", "-b:v",      bits,
                                 "-g",       "50",        "-bf",
                                 "0",        "-f",        "mp4",
                                 part});
    return QFile::rename(part, path) ? path : QString();
}

} // namespace bench
