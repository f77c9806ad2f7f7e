#include "src/interface/Export.h"

LUMEN_UNAVAILABLE_WD(LD_StartSave)
LUMEN_UNAVAILABLE_WD(LD_StopSave)
