#include "host/wall/RecordingWatch.h"

#include "host/wall/LocalSettings.h"
#include "host/wall/StreamMessages.h"

#include <QDir>
#include <QStorageInfo>

#include <algorithm>

namespace quillmark::lumen_wall {

namespace {

constexpr int kPeriodMs = 1000;
constexpr qint64 kLowOnDisk = 3'000'000'000; // the library ends recordings at a third of it

// A folder that is not there yet will stand in what is there of its path.
qint64 roomFor(const QString& folder)
{
    QFileInfo place(folder);
    while (!place.exists() && place.path() != place.filePath())
        place.setFile(place.path());
    return QStorageInfo(place.filePath()).bytesAvailable();
}

} // namespace

QStringList recordingFolders(Deck& deck)
{
    const QJsonObject settings = readSettings(deck);
    return {settings.value("recordPath").toString(), settings.value("playbackFilePath").toString()};
}

RecordingWatch::RecordingWatch(Operator& wall)
    : deck_(wall.deck())
{
    connect(this, &RecordingWatch::reported, &wall, &Operator::reported);
    connect(&timer_, &QTimer::timeout, this, &RecordingWatch::look);
    timer_.start(kPeriodMs);
}

void RecordingWatch::look()
{
    QStringList folders;
    for (int cell = 0; cell < deck_.cells().count(); ++cell) {
        const auto recording = deck_.cells().state(cell).recording;
        if (!recording)
            continue;
        if (folders.isEmpty())
            folders = recordingFolders(deck_);
        deck_.cells().setRecordedBytes(cell, bytesOf(*recording, folders));
    }
    if (folders.isEmpty())
        warned_ = false;
    else
        lookAtDisk(folders);
}

// The folders may lie on two disks; the one with less room counts.
void RecordingWatch::lookAtDisk(const QStringList& folders)
{
    qint64 free = kLowOnDisk;
    for (const QString& folder : folders)
        free = std::min(free, roomFor(folder));
    if (free >= kLowOnDisk || warned_)
        return;
    warned_ = true;
    emit reported(static_cast<int>(Severity::Warning), -1,
                  QStringLiteral("the disk has only %1 left for recordings").arg(QLocale::c().formattedDataSize(free)));
}

// A recording started before midnight stays in the folder of its day.
qint64 RecordingWatch::bytesOf(const Recording& recording, const QStringList& folders) const
{
    qint64 bytes = 0;
    for (const QString& folder : folders) {
        const QDir day(folder + '/' + recording.since.toString("yyyy-MM-dd"));
        for (const QFileInfo& part : day.entryInfoList({recording.name + "*.mp4"}, QDir::Files))
            bytes += part.size();
    }
    return bytes;
}

} // namespace quillmark::lumen_wall
