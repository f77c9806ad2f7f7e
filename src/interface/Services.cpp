#include "src/interface/Services.h"

namespace quillmark::lumen_deck {

namespace {

LocalInfo theLocalInfo;
UpDownload theUpDownload;

} // namespace

LocalInfo& localInfo()
{
    return theLocalInfo;
}

UpDownload& upDownload()
{
    return theUpDownload;
}

} // namespace quillmark::lumen_deck
