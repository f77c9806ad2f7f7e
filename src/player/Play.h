#pragma once

#include "src/util/Errors.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <memory>

class QWidget;

// Starting a stream in a window. Main thread only.
namespace quillmark::lumen_deck {

std::shared_ptr<ErrorBase> play(QWidget* mainWindow, const QJsonDocument& request);
std::shared_ptr<ErrorBase> reversePlay(QWidget* mainWindow, const QJsonDocument& request);

// The analysis overlays of a stream. What has been set stays set when a later switch is refused.
std::shared_ptr<ErrorBase> setPlayStatParam(int playId, const QJsonObject& params);

} // namespace quillmark::lumen_deck
