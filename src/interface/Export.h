#pragma once

#include "include/lumen_deck/lumen_deck.h"
#include "src/interface/CallFrame.h"

#include <type_traits>

// The exported functions, one row a function in the family files of this folder:
//
//     LUMEN_EXPORT_WD(LD_Pause, pause)
//
// The row defines the function that lumen_deck.h declares; its route stands in functions.def. The operation takes the
// widget and the document that its shape has, the document by reference or by pointer, and answers with anything that
// dealResult takes, or with nothing.

namespace quillmark::lumen_deck {

namespace route_of {
#define LUMEN_DECK_WD(name, route) constexpr Route name = Route::route;
#define LUMEN_DECK_W(name, route) constexpr Route name = Route::route;
#define LUMEN_DECK_D(name, route) constexpr Route name = Route::route;
#define LUMEN_DECK_N(name, route) constexpr Route name = Route::route;
#include "include/lumen_deck/functions.def"
} // namespace route_of

// The document of a call, in the form that the operation wants.
struct Arguments
{
    const QJsonDocument* document;
    operator const QJsonDocument&() const { return *document; }
    operator const QJsonDocument*() const { return document; }
};

template <class Operation> QJsonDocument* answerOf(Operation operation)
{
    if constexpr (std::is_void_v<decltype(operation())>) {
        operation();
        return nullptr;
    } else {
        return dealResult(operation());
    }
}

} // namespace quillmark::lumen_deck

#define LUMEN_EXPORT_WD(name, operation)                                                                               \
    QJsonDocument* name(QWidget* mainWindow, const QJsonDocument* args)                                                \
    {                                                                                                                  \
        using namespace quillmark::lumen_deck;                                                                         \
        const auto body = [](QWidget* widget, const QJsonDocument* document) {                                         \
            return answerOf([=] { return operation(widget, Arguments{document}); });                                   \
        };                                                                                                             \
        return callExported(#name, route_of::name, body, mainWindow, args);                                            \
    }

#define LUMEN_EXPORT_W(name, operation)                                                                                \
    QJsonDocument* name(QWidget* mainWindow)                                                                           \
    {                                                                                                                  \
        using namespace quillmark::lumen_deck;                                                                         \
        const auto body = [](QWidget* widget) { return answerOf([=] { return operation(widget); }); };                 \
        return callExported(#name, route_of::name, body, mainWindow);                                                  \
    }

#define LUMEN_EXPORT_D(name, operation)                                                                                \
    QJsonDocument* name(const QJsonDocument* args)                                                                     \
    {                                                                                                                  \
        using namespace quillmark::lumen_deck;                                                                         \
        const auto body = [](const QJsonDocument* document) {                                                          \
            return answerOf([=] { return operation(Arguments{document}); });                                           \
        };                                                                                                             \
        return callExported(#name, route_of::name, body, args);                                                        \
    }

#define LUMEN_EXPORT_N(name, operation)                                                                                \
    QJsonDocument* name()                                                                                              \
    {                                                                                                                  \
        using namespace quillmark::lumen_deck;                                                                         \
        const auto body = [] { return answerOf([] { return operation(); }); };                                         \
        return callExported(#name, route_of::name, body);                                                              \
    }
