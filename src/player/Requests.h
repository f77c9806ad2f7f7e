#pragma once

#include "src/util/Errors.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QWidget>

#include <memory>
#include <utility>

// The first steps that the operations on streams share. Main thread only.
namespace quillmark::lumen_deck {

class Player;

// The window that a request names; in software correction the one that holds the real stream, whatever it names.
std::pair<std::shared_ptr<ErrorBase>, QWidget*> getRequiredWidget(QWidget* mainWindow, const QJsonObject& object);

bool isPlaying(QWidget* mainWindow, int index);

// For a failed engine call that returned `returned`; reads the engine's last error, so no other call may come between.
std::shared_ptr<TidePipeError> constructTidePipeError(const QString& what, int returned, int line);

namespace detail {

// The companion of a window: a direct child of the type, or null.
template <class Child> Child* childOf(const QWidget* window)
{
    return window->findChild<Child*>(QString(), Qt::FindDirectChildrenOnly);
}

// As childOf, but made when the window has none.
template <class Child> Child* useChildOf(QWidget* window)
{
    Child* child = childOf<Child>(window);
    return child ? child : new Child(window);
}

// What a request is about: an error, or the window and, where one was asked for, its playing player.
struct Target
{
    std::shared_ptr<ErrorBase> error;
    QWidget* window = nullptr;
    Player* player = nullptr;
};

Target requireWindow(QWidget* mainWindow, const QJsonDocument& request, const QString& notAnObject);
Target requirePlaying(QWidget* mainWindow, const QJsonDocument& request, const QString& notAnObject,
                      const QString& notPlaying);

} // namespace detail

} // namespace quillmark::lumen_deck
