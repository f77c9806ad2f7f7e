#include "src/player/Recording.h"

#include "include/tide_pipe/tide_pipe.h"
#include "src/local_info.h"
#include "src/player/DayFolder.h"
#include "src/player/PlayIds.h"
#include "src/player/Player.h"
#include "src/player/Requests.h"
#include "src/util/JsonUtil.h"

#include <QFile>
#include <QPointer>
#include <QTimerEvent>

#include <sys/vfs.h>

#include <cstdint>
#include <cstdio>

namespace quillmark::lumen_deck {

namespace {

constexpr unsigned lowDiskEvent = 21;
constexpr char suffix[] = ".mp4";

// Where a recording is split, in bytes, by the setting packgeSize.
int packageSizeOf(int setting)
{
    switch (setting) {
    case 0:
        return 256'000'000;
    case 1:
        return 512'000'000;
    default:
        return 1'000'000'000;
    }
}

// A folder that cannot be asked counts as full.
bool diskIsLow(const QString& fileName)
{
    constexpr std::uint64_t unit = 1'000'000'000;
    const QString folder = "/" + fileName.section('/', 1, -2);
    struct statfs disk
    {
    };
    return statfs(folder.toUtf8().constData(), &disk) == -1 ||
           disk.f_bavail * static_cast<std::uint64_t>(disk.f_bsize) / unit < 1;
}

QString partName(const QString& fileName, int part)
{
    return QStringLiteral("%1_%2.mp4").arg(fileName, QString::number(part));
}

// The engine may still be writing the file's end: it is renamed in place or not at all, never copied.
void renameFirstPart(const QString& fileName)
{
    const QString target = partName(fileName, 1);
    if (!QFile::exists(target))
        std::rename(QFile::encodeName(fileName + suffix).constData(), QFile::encodeName(target).constData());
}

} // namespace

std::pair<std::shared_ptr<ErrorBase>, QJsonDocument> nameRecording(const QJsonDocument& request)
{
    QJsonObject object = request.object();
    const QJsonValue fileName = object.value("fileName");
    if (!fileName.isString())
        return {constructJsonError("fileName does not exists", request, LUMEN_HERE), {}};
    const QString file = "/" + fileName.toString() + suffix;
    object["previewPath"] = useDayFolder("recordPath") + file;
    object["playbackPath"] = useDayFolder("playbackFilePath") + file;
    object["packageSize"] = packageSizeOf(LocalInfo().GetLocalInfo("packgeSize").toInt());
    return {nullptr, QJsonDocument(object)};
}

std::shared_ptr<ErrorBase> startSave(QWidget* mainWindow, const QJsonDocument& named)
{
    const detail::Target target = detail::requirePlaying(
        mainWindow, named, "startSave json descriptor should be object", "the player is not playing can not record");
    if (target.error)
        return target.error;
    const QJsonObject object = named.object();
    const bool live = target.player->streamKind() == StreamKind::Live;
    const auto [pathError, path] = parseRequired<QString>(object, live ? "previewPath" : "playbackPath");
    if (pathError)
        return pathError;
    const auto [sizeError, packageSize] = parseRequired<int>(object, "packageSize");
    if (sizeError)
        return sizeError;
    constexpr int usualPackage = 2;
    const int packageType = parseOptional<int>(object, "packageType", usualPackage).second;

    const int result = TP_StartSave(target.player->playId(), path.toString().toLocal8Bit().constData(), packageType);
    if (result < 0)
        return constructTidePipeError("TP_StartSave call error", result, __LINE__);
    target.player->setSaving(true);
    target.player->checkVideoSave(path.toString().remove(suffix), packageSize.toInt());
    return nullptr;
}

std::shared_ptr<ErrorBase> stopSave(QWidget* mainWindow, const QJsonDocument& request)
{
    const detail::Target target =
        detail::requirePlaying(mainWindow, request, "stop save json descriptor should be object",
                               "the player is not playing can not stop record");
    if (target.error)
        return target.error;
    if (TP_StopSave(target.player->playId()) == -1)
        return constructTidePipeError("TP_StopSave call error", -1, __LINE__);
    target.player->setSaving(false);
    return nullptr;
}

void Player::checkVideoSave(QString fileName, int packageSize)
{
    if (!saving_)
        return;
    fileName_ = std::move(fileName);
    packageSize_ = packageSize;
    partNumber_ = 1;
    endTimer();
    timerId_ = startTimer(1000, Qt::CoarseTimer);
}

void Player::endTimer()
{
    if (timerId_ != 0)
        killTimer(timerId_);
    timerId_ = 0;
}

// Nobody tells the timer that a recording or its stream has ended: it finds out here.
void Player::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != timerId_)
        return;
    if (!saving_) {
        TP_StopSave(playId_);
        endTimer();
        return;
    }
    const int size = TP_GetRecordFileSize(playId_);
    if (diskIsLow(fileName_) && !endForLowDisk())
        return;
    if (size > packageSize_)
        startNextPart();
}

// False when the window or this recording is gone after the host has heard of it.
bool Player::endForLowDisk()
{
    const QPointer<Player> self = this;
    const int timer = timerId_;
    if (!reportStreamEvent(playId_, lowDiskEvent) || !self || !saving_ || timerId_ != timer)
        return false;
    if (TP_StopSave(playId_) >= 0)
        saving_ = false;
    endTimer();
    return true;
}

void Player::startNextPart()
{
    if (TP_SwitchFile(playId_, partName(fileName_, partNumber_ + 1).toLocal8Bit().constData()) != 0) {
        TP_StopSave(playId_);
        saving_ = false;
        endTimer();
        return;
    }
    if (partNumber_ == 1)
        renameFirstPart(fileName_);
    ++partNumber_;
}

} // namespace quillmark::lumen_deck
