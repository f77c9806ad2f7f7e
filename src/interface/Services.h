#pragma once

#include "src/local_info.h"
#include "src/up_download.h"

#include <QJsonDocument>

#include <type_traits>

namespace quillmark::lumen_deck {

// The two service objects of the process.
LocalInfo& localInfo();
UpDownload& upDownload();

// An operation of a service object for a row of the export table, whether it takes the request or not.
template <auto operation, class Service> auto callService(Service& service, const QJsonDocument* request)
{
    if constexpr (std::is_invocable_v<decltype(operation), Service&>)
        return (service.*operation)();
    else
        return (service.*operation)(request);
}

template <auto operation> auto onLocalInfo(const QJsonDocument* request)
{
    return callService<operation>(localInfo(), request);
}

template <auto operation> auto onUpDownload(const QJsonDocument* request)
{
    return callService<operation>(upDownload(), request);
}

} // namespace quillmark::lumen_deck
