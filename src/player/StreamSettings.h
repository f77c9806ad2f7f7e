#pragma once

#include "src/util/Errors.h"

#include <QJsonDocument>

#include <memory>

class QWidget;

// Settings that a stream uses later: at its next play, or when it reconnects. Main thread only.
namespace quillmark::lumen_deck {

std::shared_ptr<ErrorBase> setHttps(QWidget* mainWindow, const QJsonDocument& request); // all windows of the widget
std::shared_ptr<ErrorBase> setReconnectInfo(QWidget* mainWindow, const QJsonDocument& request);
std::shared_ptr<ErrorBase> setTrsPlayBackParam(QWidget* mainWindow, const QJsonDocument& request);

} // namespace quillmark::lumen_deck
