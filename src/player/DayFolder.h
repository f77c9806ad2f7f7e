#pragma once

#include <QString>

namespace quillmark::lumen_deck {

// Today's folder below the one that the setting `key` names, made when it is missing. That it could not be made shows
// when the engine cannot write there. Any thread.
QString useDayFolder(const QString& key);

} // namespace quillmark::lumen_deck
