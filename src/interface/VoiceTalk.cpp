#include "src/interface/Export.h"

LUMEN_UNAVAILABLE_D(LD_StartVoiceTalk)
LUMEN_UNAVAILABLE_D(LD_StopVoiceTalk)
