#include "src/interface/Export.h"

LUMEN_UNAVAILABLE_WD(LD_Play)
LUMEN_UNAVAILABLE_WD(LD_ReversePlay)
