#include "src/player/Sound.h"

#include "src/interface/Export.h"

LUMEN_EXPORT_WD(LD_OpenSound, openSound)
LUMEN_EXPORT_WD(LD_SetVolume, setVolume)
LUMEN_EXPORT_N(LD_CloseSound, closeSound)
