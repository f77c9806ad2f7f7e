#pragma once

#include "src/util/Errors.h"

#include <QJsonDocument>

#include <memory>
#include <utility>

class QWidget;

// Pictures and the time that a stream shows.
namespace quillmark::lumen_deck {

// Adds the file's path and format to a snapshot request, and makes the folder of the day. Looks at no window: any
// thread.
std::pair<std::shared_ptr<ErrorBase>, QJsonDocument> nameSnapshot(const QJsonDocument& request);

// Main thread only.
std::shared_ptr<ErrorBase> snapshot(QWidget* mainWindow, const QJsonDocument& named);
std::pair<std::shared_ptr<ErrorBase>, QJsonDocument> getOSDTime(QWidget* mainWindow, const QJsonDocument& request);

} // namespace quillmark::lumen_deck
