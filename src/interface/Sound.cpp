#include "src/interface/Export.h"

LUMEN_UNAVAILABLE_WD(LD_OpenSound)
LUMEN_UNAVAILABLE_WD(LD_SetVolume)
LUMEN_UNAVAILABLE_N(LD_CloseSound)
