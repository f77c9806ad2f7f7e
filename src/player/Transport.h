#pragma once

#include "src/util/Errors.h"

#include <QJsonDocument>

#include <memory>
#include <utility>

class QWidget;

// What can be done to a stream that runs. Main thread only.
namespace quillmark::lumen_deck {

std::shared_ptr<ErrorBase> pause(QWidget* mainWindow, const QJsonDocument& request);
std::shared_ptr<ErrorBase> resume(QWidget* mainWindow, const QJsonDocument& request);
std::shared_ptr<ErrorBase> fast(QWidget* mainWindow, const QJsonDocument& request);
std::shared_ptr<ErrorBase> slow(QWidget* mainWindow, const QJsonDocument& request);
std::shared_ptr<ErrorBase> frameForward(QWidget* mainWindow, const QJsonDocument& request);

std::shared_ptr<ErrorBase> stop(QWidget* mainWindow, const QJsonDocument& request);
void stopAll(QWidget* mainWindow); // the parked windows too

// The picture's size, an empty document while there is none.
std::pair<std::shared_ptr<ErrorBase>, QJsonDocument> queryPlayStatus(QWidget* mainWindow, const QJsonDocument& request);

} // namespace quillmark::lumen_deck
