#include "src/interface/Export.h"

LUMEN_UNAVAILABLE_D(LD_GetLocalConfig)
LUMEN_UNAVAILABLE_D(LD_SetLocalConfig)
