#pragma once

#include "src/util/Errors.h"

#include <QJsonDocument>

#include <memory>

class QWidget;

// Recording a window's stream into MP4 files; the player watches their size and the disk. Main thread only.
namespace quillmark::lumen_deck {

// Adds to a request where the files may go and how long they may grow, and makes the folders of the day.
std::pair<std::shared_ptr<ErrorBase>, QJsonDocument> nameRecording(const QJsonDocument& request);

std::shared_ptr<ErrorBase> startSave(QWidget* mainWindow, const QJsonDocument& named);
std::shared_ptr<ErrorBase> stopSave(QWidget* mainWindow, const QJsonDocument& request);

} // namespace quillmark::lumen_deck
