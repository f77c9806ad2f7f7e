#include "src/interface/Export.h"

LUMEN_UNAVAILABLE_WD(LD_GetOSDTime)
LUMEN_UNAVAILABLE_WD(LD_Snapshot)
