#include "src/player/PlayIds.h"

#include "include/tide_pipe/tide_pipe.h"
#include "src/ApiDispatcher.h"
#include "src/WindowDirectory.h"
#include "src/player/IPlayer.h"

#include <QDebug>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>

#include <mutex>
#include <optional>
#include <unordered_map>

namespace quillmark::lumen_deck {

namespace {

struct PlayIds
{
    std::mutex mutex;
    std::unordered_map<int, IPlayer*> g_play_id_player_map; // guarded by mutex
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

void tidePipeMessageHanlder(int playId, unsigned message, void*)
{
    reportStreamEvent(playId, message);
}

} // namespace

void bindPlayId(int playId, IPlayer* player)
{
    PlayIds& ids = playIds();
    const std::lock_guard lock(ids.mutex);
    ids.g_play_id_player_map[playId] = player;
}

void releasePlayId(int playId)
{
    PlayIds& ids = playIds();
    const std::lock_guard lock(ids.mutex);
    ids.g_play_id_player_map.erase(playId);
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
