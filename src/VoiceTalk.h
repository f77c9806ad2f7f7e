#pragma once

#include "src/util/Errors.h"

#include <QJsonDocument>

#include <memory>

// Two-way talk with a device, beside all windows. The host names a talk by a uuid of its own. Any thread.
namespace quillmark::lumen_deck {

std::shared_ptr<ErrorBase> openVoiceTalk(const QJsonDocument& request);
std::shared_ptr<ErrorBase> stopVoiceTalk(const QJsonDocument& request); // a talk that is not open is no error

} // namespace quillmark::lumen_deck
