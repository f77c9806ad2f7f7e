#include "host/wall/LocalSettings.h"

namespace quillmark::lumen_wall {

QJsonObject readSettings(const Deck& deck)
{
    return deck.ask("LD_GetLocalConfig").toObject().value("localConfig").toObject();
}

// Read first: what is written back is all that the library has read. A write tells no failure.
bool writeSettings(Deck& deck, const QJsonObject& texts)
{
    readSettings(deck);
    deck.call("LD_SetLocalConfig", {{"localConfig", texts}});
    const QJsonObject written = readSettings(deck);
    for (auto text = texts.begin(); text != texts.end(); ++text) {
        if (written.value(text.key()) != text.value())
            return false;
    }
    return true;
}

} // namespace quillmark::lumen_wall
