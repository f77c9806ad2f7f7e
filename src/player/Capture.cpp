#include "src/player/Capture.h"

#include "include/tide_pipe/tide_pipe.h"
#include "src/local_info.h"
#include "src/player/DayFolder.h"
#include "src/player/IFisheyeModule.h"
#include "src/player/Player.h"
#include "src/player/Requests.h"
#include "src/util/JsonUtil.h"

#include <ctime>
#include <iterator>

namespace quillmark::lumen_deck {

namespace {

// The values of the setting captureFileFormat.
struct PictureFormat
{
    const char* suffix;
    int (*capture)(int playId, const char* path);
};

constexpr PictureFormat pictureFormats[] = {{".jpg", TP_JPEGCapture}, {".bmp", TP_BMPCapture}};

const PictureFormat* pictureFormat(int number)
{
    return number >= 0 && number < static_cast<int>(std::size(pictureFormats)) ? &pictureFormats[number] : nullptr;
}

// Pictures of recorded streams are told by their name.
QString snapshotPath(QString fileName)
{
    const QString recorded = "playback_";
    const bool ofRecording = fileName.contains(recorded);
    fileName.remove(recorded);
    QString path = useDayFolder(ofRecording ? "playbackPicPath" : "capturePath") + "/" + fileName;
    for (const PictureFormat& format : pictureFormats)
        path.remove(format.suffix);
    return path;
}

// In software correction the view of the window that the request names is captured, not the round picture.
std::shared_ptr<ErrorBase> captureView(IFisheyeModule& fisheye, const QJsonObject& object, int playId, int format,
                                       const QByteArray& path)
{
    const auto [error, reference] = parseReference<QVariant>(object, "wndIndex");
    if (error)
        return error;
    const int viewId = fisheye.getSubWindowPlayerId(reference.toInt());
    if (TP_FEC_CapturePIC(format != 0 ? 1 : 0, playId, viewId, path.constData()) == -1)
        return constructTidePipeError("call TP_FECCapture error", -1, __LINE__);
    return nullptr;
}

bool between(int value, int lowest, int highest)
{
    return value >= lowest && value <= highest;
}

// Month 13 and second 60 pass: mktime carries them over.
bool plausible(const _TP_OSDTIME& time)
{
    return between(time.year, 1970, 2037) && between(time.month, 1, 13) && between(time.day, 1, 31) &&
           time.hour <= 60 && time.minute <= 60 && time.second <= 60;
}

std::time_t secondsOf(const _TP_OSDTIME& time)
{
    std::tm parts{};
    parts.tm_year = time.year - 1900;
    parts.tm_mon = time.month - 1;
    parts.tm_mday = time.day;
    parts.tm_hour = time.hour;
    parts.tm_min = time.minute;
    parts.tm_sec = time.second;
    parts.tm_isdst = -1;
    return std::mktime(&parts);
}

} // namespace

std::pair<std::shared_ptr<ErrorBase>, QJsonDocument> nameSnapshot(const QJsonDocument& request)
{
    if (!request.isObject())
        return {constructJsonError("Snapshot descriptor should be json object", request, LUMEN_HERE), {}};
    QJsonObject object = request.object();
    const int format = LocalInfo().GetLocalInfo("captureFileFormat").toInt();
    const QJsonValue fileName = object.value("fileName");
    if (!fileName.isString())
        return {constructJsonError("Snapshot descriptor should contains key 'fileName' of String", request, LUMEN_HERE),
                {}};
    const QString path = snapshotPath(fileName.toString());
    const PictureFormat* picture = pictureFormat(format);
    if (!picture)
        return {constructJsonError("file format magic number is neither 0 nor 1", request, LUMEN_HERE), {}};
    object["path"] = path + picture->suffix;
    object["format"] = format;
    return {nullptr, QJsonDocument(object)};
}

std::shared_ptr<ErrorBase> snapshot(QWidget* mainWindow, const QJsonDocument& named)
{
    const detail::Target target =
        detail::requireWindow(mainWindow, named, "snapshot json descriptor should be a json object");
    if (target.error)
        return target.error;
    const QJsonObject object = named.object();
    const auto [pathError, path] = parseRequired<QString>(object, "path");
    const auto [formatError, format] = parseRequired<int>(object, "format");
    if (formatError || pathError)
        return formatError ? formatError : pathError;
    const auto* player = detail::childOf<Player>(target.window);
    if (!player || !player->playing())
        return std::make_shared<InvalidStatusError>("the player is not playing can not capture", LUMEN_HERE);

    const QByteArray localPath = path.toString().toLocal8Bit();
    IFisheyeModule* fisheye = findFisheyeModule(mainWindow);
    if (fisheye && fisheye->getCorrectionType() == 1)
        return captureView(*fisheye, object, player->playId(), format.toInt(), localPath);
    const PictureFormat* picture = pictureFormat(format.toInt());
    if (!picture)
        return constructJsonError("unknown file format parameter " + format.toString(), named, LUMEN_HERE);
    if (picture->capture(player->playId(), localPath.constData()) == -1)
        return constructTidePipeError("call TP_JPEGCapture error", -1, __LINE__);
    return nullptr;
}

std::pair<std::shared_ptr<ErrorBase>, QJsonDocument> getOSDTime(QWidget* mainWindow, const QJsonDocument& request)
{
    const QString noTime = "the player is not playing can not get osd time";
    const detail::Target target =
        detail::requirePlaying(mainWindow, request, "getOSDTime json descriptor should be a json object", noTime);
    if (target.error)
        return {target.error, {}};
    _TP_OSDTIME time{};
    if (TP_GetOSDTime(target.player->playId(), &time) == -1)
        return {constructTidePipeError("call TP_GetOSDTime error", -1, __LINE__), {}};
    if (!plausible(time))
        return {std::make_shared<InvalidStatusError>(noTime, LUMEN_HERE), {}};
    return {nullptr, QJsonDocument(QJsonObject{{"osdTime", static_cast<qint64>(secondsOf(time))}})};
}

} // namespace quillmark::lumen_deck
