#include <lumen_deck/lumen_deck.h>
#include <lumen_deck/lumen_deck.h>
