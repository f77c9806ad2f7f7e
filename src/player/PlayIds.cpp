#include "src/player/PlayIds.h"

#include "include/tide_pipe/tide_pipe.h"
#include "src/ApiDispatcher.h"
#include "src/WindowDirectory.h"
#include "src/player/IPlayer.h"

#include <QDebug>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QTimer>

#include <deque>
#include <iterator>
#include <mutex>
#include <optional>
#include <unordered_map>

namespace quillmark::lumen_deck {

namespace {

struct PlayIds
{
    std::mutex mutex; // guards everything
    std::unordered_map<int, IPlayer*> g_play_id_player_map;
    bool beginning = false; // a BeginningPlay lives
    // Messages that came before their id was bound, and those behind them.
    std::unordered_map<int, std::deque<unsigned>> early;
};

// Never destroyed: the engine may send messages while the process exits.
PlayIds& playIds()
{
    static auto* const ids = new PlayIds;
    return *ids;
}

bool gTidePipeHandlerRegistered = false; // main thread

// The id's lock is kept while the directory is asked, which takes its own lock and nothing else: a player leaves the
// map before its window's address can be used again.
std::optional<WindowDirectory::Place> placeOf(int playId)
{
    PlayIds& ids = playIds();
    const std::lock_guard lock(ids.mutex);
    const auto found = ids.g_play_id_player_map.find(playId);
    if (found == ids.g_play_id_player_map.end())
        return std::nullopt;
    return WindowDirectory::instance().place(found->second->parent());
}

// Whether the message is kept, since its stream may be about to begin or has messages that go first.
bool keepEarly(int playId, unsigned message)
{
    PlayIds& ids = playIds();
    const std::lock_guard lock(ids.mutex);
    const bool known = ids.g_play_id_player_map.count(playId) != 0;
    if (ids.early.count(playId) == 0 && (known || !ids.beginning))
        return false;
    ids.early[playId].push_back(message);
    return true;
}

std::optional<unsigned> takeEarly(int playId)
{
    PlayIds& ids = playIds();
    const std::lock_guard lock(ids.mutex);
    const auto found = ids.early.find(playId);
    if (found == ids.early.end())
        return std::nullopt;
    if (found->second.empty()) {
        ids.early.erase(found);
        return std::nullopt;
    }
    const unsigned message = found->second.front();
    found->second.pop_front();
    return message;
}

void sendEarly(int playId)
{
    while (const std::optional<unsigned> message = takeEarly(playId))
        reportStreamEvent(playId, *message);
}

void tidePipeMessageHanlder(int playId, unsigned message, void*)
{
    if (!keepEarly(playId, message))
        reportStreamEvent(playId, message);
}

} // namespace

void bindPlayId(int playId, IPlayer* player)
{
    PlayIds& ids = playIds();
    const std::lock_guard lock(ids.mutex);
    ids.g_play_id_player_map[playId] = player;
    if (ids.early.count(playId) != 0)
        QTimer::singleShot(0, player, [playId] { sendEarly(playId); });
}

BeginningPlay::BeginningPlay()
{
    PlayIds& ids = playIds();
    const std::lock_guard lock(ids.mutex);
    ids.beginning = true;
}

BeginningPlay::~BeginningPlay()
{
    PlayIds& ids = playIds();
    const std::lock_guard lock(ids.mutex);
    ids.beginning = false;
    for (auto kept = ids.early.begin(); kept != ids.early.end();)
        kept = ids.g_play_id_player_map.count(kept->first) == 0 ? ids.early.erase(kept) : std::next(kept);
}

void releasePlayId(int playId)
{
    PlayIds& ids = playIds();
    const std::lock_guard lock(ids.mutex);
    ids.g_play_id_player_map.erase(playId);
    ids.early.erase(playId);
}

bool reportStreamEvent(int playId, unsigned eventType)
{
    const std::optional<WindowDirectory::Place> place = placeOf(playId);
    if (!place)
        return false;
    const QJsonDocument document(QJsonObject{{"cmd", "window.onPluginEventHandler"},
                                             {"wndIndex", place->index},
                                             {"eventType", static_cast<qint64>(eventType)}});
    callCallback(LD_EVENT_STREAM, place->mainWidget, &document);
    return true;
}

// Tried again by the next player when the engine refuses: without the handler the wall plays on, but mutely.
void ensureMessageHandler()
{
    if (gTidePipeHandlerRegistered)
        return;
    gTidePipeHandlerRegistered = TP_SetMessageHandler(tidePipeMessageHanlder, nullptr) == 0;
    if (!gTidePipeHandlerRegistered)
        qWarning("the stream engine takes no message handler, last error %u", TP_GetLastError());
}

} // namespace quillmark::lumen_deck
