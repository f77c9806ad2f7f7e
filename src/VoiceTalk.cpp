#include "src/VoiceTalk.h"

#include "include/tide_pipe/tide_pipe.h"
#include "src/util/JsonUtil.h"

#include <QDebug>
#include <QMap>

#include <array>
#include <mutex>

namespace quillmark::lumen_deck {

namespace {

constexpr int noTalk = -1;

std::mutex talkLock;             // never held while the engine is called
QMap<QString, int> gVoiceTalkId; // guarded by talkLock: the engine's id, noTalk once it has ended

void keepTalk(const QString& uuid, int talkId)
{
    const std::lock_guard lock(talkLock);
    gVoiceTalkId[uuid] = talkId;
}

// Of two threads that stop one talk, one gets it.
int takeTalk(const QString& uuid)
{
    const std::lock_guard lock(talkLock);
    const auto found = gVoiceTalkId.find(uuid);
    return found != gVoiceTalkId.end() ? std::exchange(*found, noTalk) : noTalk;
}

struct TalkRequest
{
    std::array<QByteArray, 4> texts; // openUrl, closeUrl, dataUrl, auth
    int audioType = 0;
    std::array<int, 4> sound{}; // bitRate, sampleRate, soundChannel, deviceCastChannelNum; -1 leaves it to the device
};

std::pair<std::shared_ptr<JsonError>, TalkRequest> readTalk(const QJsonObject& object)
{
    TalkRequest talk;
    auto text = talk.texts.begin();
    for (const char* key : {"openUrl", "closeUrl", "dataUrl", "auth"}) {
        const auto [error, value] = parseRequired<QString>(object, key);
        if (error)
            return {error, {}};
        *text++ = value.toString().toUtf8();
    }
    const auto [error, audioType] = parseRequired<int>(object, "audioType");
    if (error)
        return {error, {}};
    talk.audioType = audioType.toInt();
    auto number = talk.sound.begin();
    for (const char* key : {"bitRate", "sampleRate", "soundChannel", "deviceCastChannelNum"})
        *number++ = parseOptional<int>(object, key, -1).second;
    return {nullptr, talk};
}

int callStart(const TalkRequest& talk)
{
    const auto& [openUrl, closeUrl, dataUrl, auth] = talk.texts;
    const auto& [bitRate, sampleRate, soundChannel, castChannel] = talk.sound;
    return TP_StartVoiceTalk(openUrl.constData(), closeUrl.constData(), dataUrl.constData(), auth.constData(),
                             talk.audioType, bitRate, sampleRate, soundChannel, castChannel);
}

std::shared_ptr<ErrorBase> refusedTalk()
{
    const QString message = QStringLiteral("call tide pipe TP_StartVoiceTalk error, TP_StartVoiceTalk returns %1, "
                                           "TP_GetLastError returns %2")
                                .arg(QString::number(-1), QString::number(TP_GetLastError()));
    return std::make_shared<TidePipeError>(message, LUMEN_HERE, static_cast<int>(TP_GetLastError()));
}

void logTalk(QJsonObject request)
{
    request.remove("auth");
    qDebug().noquote() << "open voice talk" << QJsonDocument(request).toJson();
}

} // namespace

// The uuid is read last: without it a talk has begun that nobody can name, and the host hears that.
std::shared_ptr<ErrorBase> openVoiceTalk(const QJsonDocument& request)
{
    logTalk(request.object());
    if (!request.isObject())
        return constructJsonError("open voice talk ", request, LUMEN_HERE);
    const auto [talkError, talk] = readTalk(request.object());
    if (talkError)
        return talkError;
    const int talkId = callStart(talk);
    if (talkId == -1)
        return refusedTalk();
    const auto [uuidError, uuid] = parseRequired<QString>(request.object(), "uuid");
    if (uuidError)
        return uuidError;
    keepTalk(uuid.toString(), talkId);
    return nullptr;
}

std::shared_ptr<ErrorBase> stopVoiceTalk(const QJsonDocument& request)
{
    const auto [error, uuid] = parseRequired<QString>(request.object(), "uuid");
    if (error)
        return error;
    const int talkId = takeTalk(uuid.toString());
    if (talkId >= 0)
        TP_StopVoiceTalk(talkId);
    return nullptr;
}

} // namespace quillmark::lumen_deck
