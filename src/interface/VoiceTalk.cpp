#include "src/VoiceTalk.h"

#include "src/interface/Export.h"

LUMEN_EXPORT_D(LD_StartVoiceTalk, openVoiceTalk)
LUMEN_EXPORT_D(LD_StopVoiceTalk, stopVoiceTalk)
