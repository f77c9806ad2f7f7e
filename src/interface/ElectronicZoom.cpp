#include "src/interface/Export.h"

LUMEN_UNAVAILABLE_WD(LD_EnableEZoom)
LUMEN_UNAVAILABLE_W(LD_DisableEZoom)
