#include "src/interface/Export.h"
#include "src/interface/Services.h"

namespace {

// A setting that cannot be written is not reported.
void setLocalConfig(const QJsonDocument* request)
{
    quillmark::lumen_deck::localInfo().WriteLocalFile(request);
}

} // namespace

LUMEN_EXPORT_D(LD_GetLocalConfig, onLocalInfo<&LocalInfo::ReadLocalFile>)
LUMEN_EXPORT_D(LD_SetLocalConfig, setLocalConfig)
