#pragma once

#include "src/graphics/GraphicsBase.h"
#include "src/graphics/ToolBase.h"

#include <QJsonArray>
#include <QJsonObject>

#include <memory>
#include <utility>

class QWidget;

// What the exported drawing functions stand on. Each acts on the view of one window: the one that the document names
// or, where it names none, the selected one. Main thread.
namespace quillmark::lumen_deck {

std::shared_ptr<ErrorBase> setTool(QWidget* mainWindow, const QJsonObject& object, ToolBase::ToolType type);
std::shared_ptr<ErrorBase> addGraphics(QWidget* mainWindow, const QJsonObject& object, GraphicsBase::GraphicsType type);
std::shared_ptr<ErrorBase> setDrawStatus(QWidget* mainWindow, const QJsonObject& object);

// Drawing one shape at a time with the mouse, each reported whole.
std::shared_ptr<ErrorBase> setDrawCallback(QWidget* mainWindow, const QJsonObject& object);

// The documents of all shapes of exactly this type, or of all with Any.
std::pair<std::shared_ptr<ErrorBase>, std::shared_ptr<QJsonArray>> queryGraphics(QWidget* mainWindow,
                                                                                 GraphicsBase::GraphicsType type);

std::shared_ptr<ErrorBase> clearGraphics(QWidget* mainWindow, GraphicsBase::GraphicsType type);
// Shapes of exactly this type; with Any the references count whatever the type.
std::shared_ptr<ErrorBase> clearGraphics(QWidget* mainWindow, QJsonArray references, GraphicsBase::GraphicsType type);
std::shared_ptr<ErrorBase> clearAllWindowsGraphics(QWidget* mainWindow, GraphicsBase::GraphicsType type);
int clearSelectedGraphic(QWidget* mainWindow); // the id of the last one, or -1
std::shared_ptr<ErrorBase> selectGraphic(QWidget* mainWindow, QVariant reference, GraphicsBase::GraphicsType type);

} // namespace quillmark::lumen_deck
