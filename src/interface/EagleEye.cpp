#include "src/interface/Export.h"

LUMEN_UNAVAILABLE_WD(LD_SRInit)
LUMEN_UNAVAILABLE_WD(LD_SRPTZ)
