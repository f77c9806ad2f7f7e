#pragma once

#include "src/util/Errors.h"

#include <QJsonDocument>

#include <memory>

class QWidget;

// Which window is heard, and how loud. Main thread only, but for closeSound.
namespace quillmark::lumen_deck {

std::shared_ptr<ErrorBase> openSound(QWidget* mainWindow, const QJsonDocument& request);
std::shared_ptr<ErrorBase> setVolume(QWidget* mainWindow, const QJsonDocument& request);
std::shared_ptr<ErrorBase> closeSound(); // any thread

} // namespace quillmark::lumen_deck
