// The interface of liblumen_deck as one type, for the comparison with lumen_deck.abi.

// Qt's classes stay names: the interface has pointers to them only, and their insides are Qt's to change.
#define QJSONDOCUMENT_H
class QJsonDocument;

#include "include/lumen_deck/lumen_deck.h"

extern "C" __attribute__((visibility("default"))) struct LumenDeckInterface
{
#define LUMEN_DECK_WD(name, route) decltype(&::name) name;
#define LUMEN_DECK_W(name, route) decltype(&::name) name;
#define LUMEN_DECK_D(name, route) decltype(&::name) name;
#define LUMEN_DECK_N(name, route) decltype(&::name) name;
#define LUMEN_DECK_OWN(name, route) decltype(&::name) name;
#include "include/lumen_deck/functions.def"
} const lumen_deck_interface{};
