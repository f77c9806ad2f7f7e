#include "src/player/Play.h"

#include "include/tide_pipe/tide_pipe.h"
#include "src/WindowDirectory.h"
#include "src/graphics/IGraphicsView.h"
#include "src/player/IEagleEyeModule.h"
#include "src/player/IFisheyeModule.h"
#include "src/player/PlayIds.h"
#include "src/player/PlayParam.h"
#include "src/player/Player.h"
#include "src/player/Requests.h"
#include "src/util/JsonUtil.h"

#include <cstring>
#include <iterator>

namespace quillmark::lumen_deck {

namespace {

// What a play request says of its source.
struct Source
{
    QString url;
    QString auth;
    QString startTime;
    QString stopTime;
};

using TextReader = std::pair<std::shared_ptr<JsonError>, QVariant> (*)(const QJsonObject&, const QString&);

// `readTime` says whether the two times may be missing.
std::pair<std::shared_ptr<ErrorBase>, Source> readSource(const QJsonObject& object, TextReader readTime)
{
    Source source;
    const struct
    {
        const char* key;
        TextReader read;
        QString& text;
    } fields[] = {{"url", parseRequired<QString>, source.url},
                  {"auth", parseRequired<QString>, source.auth},
                  {"startTime", readTime, source.startTime},
                  {"stopTime", readTime, source.stopTime}};
    for (const auto& field : fields) {
        const auto [error, value] = field.read(object, field.key);
        if (error)
            return {error, {}};
        field.text = value.toString();
    }
    return {nullptr, source};
}

// No check of the type stands behind a whole number: what is none reads as 0.
int readNumber(const QJsonObject& object, const QString& key)
{
    return parseOptional<int>(object, key, 0).second;
}

int displayFrames(const QJsonObject& object)
{
    constexpr int framesOfType[] = {1, 3, 6, 15};
    constexpr int usualFrames = 6;
    constexpr int customType = 4;
    const int type = readNumber(object, "buffNumberType");
    if (type == customType)
        return readNumber(object, "customBuffNumber");
    return type >= 0 && type < static_cast<int>(std::size(framesOfType)) ? framesOfType[type] : usualFrames;
}

// Over plain HTTP and over HTTPS the same choice of the user has different codes.
int protocolCode(int chosen, bool https)
{
    constexpr int overHttp = 4;
    constexpr int overHttps = 5;
    return chosen == overHttp && https ? overHttps : chosen;
}

StreamKind streamKindOf(const QString& url)
{
    constexpr struct
    {
        const char* word;
        StreamKind kind;
    } words[] = {{"channels", StreamKind::Live},  {"quillmark", StreamKind::Live},
                 {"sdk/play/", StreamKind::Live}, {"tracks", StreamKind::Recorded},
                 {"vod", StreamKind::Recorded},   {"sdk/playback", StreamKind::Recorded}};
    for (const auto& row : words) {
        if (url.contains(QLatin1String(row.word), Qt::CaseInsensitive))
            return row.kind;
    }
    return StreamKind::Other;
}

const _TP_TRANSPARAM* transcodingOf(QWidget* window, const QString& url)
{
    const bool transcoded = url.contains(QLatin1String("transcoding"), Qt::CaseInsensitive);
    return transcoded ? &detail::useChildOf<PlayParam>(window)->block() : nullptr;
}

// The engine takes the block as 12 bytes: those between its members are zero too.
void readEagleEye(const QWidget* window, _TP_EAGLEEYEPARAM& block)
{
    std::memset(&block, 0, sizeof block);
    const auto* module = detail::childOf<IEagleEyeModule>(window);
    if (!module)
        return;
    const _TP_EAGLEEYEPARAM settings = module->getEagleEyeParam();
    block.flag = settings.flag;
    block.mode = settings.mode;
    block.expandType = settings.expandType;
}

int callPlay(QWidget* window, const Source& source, const QJsonObject& object, int protocol, int correctionType)
{
    constexpr int grouped = 1;
    constexpr int ungrouped = -1;
    const int group = readNumber(object, "playGroup") == 1 ? grouped : ungrouped;
    const _TP_TRANSPARAM* transParam = transcodingOf(window, source.url);
    _TP_EAGLEEYEPARAM eagleEye;
    readEagleEye(window, eagleEye);
    return TP_Play(source.url.toUtf8().constData(), source.auth.toUtf8().constData(), protocol, window->winId(),
                   source.startTime.toUtf8().constData(), source.stopTime.toUtf8().constData(), correctionType,
                   transParam, &eagleEye, group);
}

// Draw thread of the engine. Shapes first, fisheye marks over them.
void paintCallback(int, void* drawContext, void* user)
{
    const WindowDirectory::Visit visit = WindowDirectory::instance().visit(user);
    if (!visit || !visit.view())
        return;
    visit.view()->render(drawContext);
    if (!visit.overlay())
        return;
    visit.overlay()->DrawFishEyeBox(drawContext);
    visit.overlay()->DrawFishWndId(drawContext);
}

} // namespace

std::shared_ptr<ErrorBase> play(QWidget* mainWindow, const QJsonDocument& request)
{
    const auto [targetError, window, none] =
        detail::requireWindow(mainWindow, request, "play descriptor should be an object");
    if (targetError)
        return targetError;
    const QJsonObject object = request.object();
    const auto [sourceError, source] = readSource(object, parseOptional<QString>);
    if (sourceError)
        return sourceError;
    auto* player = detail::useChildOf<Player>(window);
    if (player->playing())
        return std::make_shared<InvalidStatusError>("The player is already playing, can not play twice", LUMEN_HERE);

    const BeginningPlay beginning;
    TP_SetDisplayBuf(displayFrames(object));
    const int correctionType = correctionTypeOf(mainWindow);
    const int protocol = protocolCode(readNumber(object, "protocolType"), player->https());
    const int playId = callPlay(window, source, object, protocol, correctionType);
    if (playId == -1)
        return constructTidePipeError("tide_pipe error call tide_pipe TP_Play error", -1, __LINE__);
    player->play(playId);
    player->setStreamKind(streamKindOf(source.url));
    setPlayStatParam(playId, object);
    // The windows of a dewarped stream bring draw hooks of their own.
    if (correctionType != 0)
        return nullptr;
    if (TP_RigisterDrawFun(playId, paintCallback, window) == -1)
        return constructTidePipeError("call TP_RigisterDrawFun error", -1, __LINE__);
    return nullptr;
}

std::shared_ptr<ErrorBase> reversePlay(QWidget* mainWindow, const QJsonDocument& request)
{
    const auto [targetError, window, none] =
        detail::requireWindow(mainWindow, request, "reverse play json descriptor should be json object");
    if (targetError)
        return targetError;
    const QJsonObject object = request.object();
    const auto [sourceError, source] = readSource(object, parseRequired<QString>);
    if (sourceError)
        return sourceError;
    auto* player = detail::useChildOf<Player>(window);
    if (player->playing())
        return std::make_shared<InvalidStatusError>("is player is ready playing, can not play twice", LUMEN_HERE);

    const BeginningPlay beginning;
    const int playId =
        TP_ReversePlay(source.url.toUtf8().constData(), source.auth.toUtf8().constData(), 0, window->winId(),
                       source.startTime.toUtf8().constData(), source.stopTime.toUtf8().constData());
    if (playId == -1)
        return constructTidePipeError("call TP_ReversePlay error", -1, __LINE__);
    setPlayStatParam(playId, object);
    player->reversePlay(playId);
    if (TP_RigisterDrawFun(playId, paintCallback, window) == -1)
        return constructTidePipeError("call TP_RigisterDrawFunc error", -1, __LINE__);
    return nullptr;
}

} // namespace quillmark::lumen_deck
