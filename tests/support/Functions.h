#pragma once

#include "include/lumen_deck/lumen_deck.h"

#include <QApplication>
#include <QJsonDocument>
#include <QTimer>
#include <QWidget>

#include <algorithm>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

// The exported functions as data, for what is done with each of them.
namespace functions {

using WithBoth = QJsonDocument* (*)(QWidget*, const QJsonDocument*);
using WithWidget = QJsonDocument* (*)(QWidget*);
using WithDocument = QJsonDocument* (*)(const QJsonDocument*);
using WithNothing = QJsonDocument* (*)();

struct Function
{
    std::string_view name;
    bool onMainThread; // touches widgets on the caller's thread
    std::variant<WithBoth, WithWidget, WithDocument, WithNothing> address;

    QJsonDocument* operator()(QWidget* wall, const QJsonDocument* request) const
    {
        if (const auto* const both = std::get_if<WithBoth>(&address))
            return (*both)(wall, request);
        if (const auto* const widget = std::get_if<WithWidget>(&address))
            return (*widget)(wall);
        const auto* const document = std::get_if<WithDocument>(&address);
        return document ? (*document)(request) : std::get<WithNothing>(address)();
    }
};

// All but those with a signature of their own, and LD_OpenDirectory, which would start the desktop's file manager.
inline const std::vector<Function>& all()
{
    static const std::vector<Function> list = [] {
        enum Route
        {
            Queued = 0,
            Unmoved = 0,
            DirectThenQueued = 0,
            Direct = 1
        };
        std::vector<Function> functions{
#define LUMEN_DECK_WD(name, route) {#name, (route) != 0, name},
#define LUMEN_DECK_W(name, route) {#name, (route) != 0, name},
#define LUMEN_DECK_D(name, route) {#name, false, name},
#define LUMEN_DECK_N(name, route) {#name, (route) != 0, name},
#include "include/lumen_deck/functions.def"
        };
        functions.erase(std::find_if(functions.begin(), functions.end(),
                                     [](const Function& one) { return one.name == "LD_OpenDirectory"; }));
        return functions;
    }();
    return list;
}

template <class Signature> std::vector<std::pair<std::string_view, Signature>> of()
{
    std::vector<std::pair<std::string_view, Signature>> chosen;
    for (const Function& function : all()) {
        if (const auto* const address = std::get_if<Signature>(&function.address))
            chosen.emplace_back(function.name, *address);
    }
    return chosen;
}

// Enough for most functions to do what they do.
inline const QJsonDocument& request()
{
    static const QJsonDocument document = QJsonDocument::fromJson(
        R"({"wndIndex":0,"index":0,"url":"rtsp://camera/channels/1","auth":"a:b","fileName":"f","type":1,"mode":1,"volume":5,
            "enable":true,"drawType":"Rect","drawInfo":{},"direction":2,"speed":3,"step":3,"id":1,"uuid":"u","audioType":0,
            "width":704,"height":576,"startTime":"","stopTime":"","windows":[{"width":1,"height":1},{"wndIndex":1}]})");
    return document;
}

// Who closes every dialog.
class Nobody
{
public:
    Nobody()
    {
        QObject::connect(&often_, &QTimer::timeout, [] {
            if (QWidget* const dialog = QApplication::activeModalWidget())
                dialog->close();
        });
        often_.start(1);
    }

private:
    QTimer often_;
};

} // namespace functions
