#pragma once

#include "host/wall/Deck.h"

#include <QJsonObject>

// The user's settings, which the library keeps in a file. Main thread.
namespace quillmark::lumen_wall {

QJsonObject readSettings(const Deck& deck);

// Lays texts over what is in the file. False: the file does not say so afterwards.
bool writeSettings(Deck& deck, const QJsonObject& texts);

} // namespace quillmark::lumen_wall
