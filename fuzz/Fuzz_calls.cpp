// Lines of a function's name and its document, called one after the other on a wall with a stream: "LD_Pause {...}".

#include "fuzz/FuzzWall.h"
#include "fuzz/Input.h"

#include <array>
#include <functional>
#include <string_view>
#include <variant>

namespace {

using fuzz::FuzzWall;

struct Function
{
    std::string_view name;
    std::variant<QJsonDocument* (*)(QWidget*, const QJsonDocument*), QJsonDocument* (*)(QWidget*),
                 QJsonDocument* (*)(const QJsonDocument*), QJsonDocument* (*)()>
        address;
};

const Function functions[] = {
#define LUMEN_DECK_WD(name, route) {#name, name},
#define LUMEN_DECK_W(name, route) {#name, name},
#define LUMEN_DECK_D(name, route) {#name, name},
#define LUMEN_DECK_N(name, route) {#name, name},
#include "include/lumen_deck/functions.def"
};

// Starts the desktop's file manager.
bool leavesTheProcess(std::string_view name)
{
    return name == "LD_OpenDirectory";
}

// A name that a mutation has spoilt stands for some function as well.
const Function& find(std::string_view name)
{
    for (const Function& function : functions) {
        if (function.name == name)
            return function;
    }
    return functions[std::hash<std::string_view>{}(name) % std::size(functions)];
}

void call(FuzzWall& wall, const Function& function, const QJsonDocument& document)
{
    struct Caller
    {
        FuzzWall& wall;
        const QJsonDocument& document;
        QJsonDocument* operator()(QJsonDocument* (*f)(QWidget*, const QJsonDocument*)) const
        {
            return f(wall.widget(), &document);
        }
        QJsonDocument* operator()(QJsonDocument* (*f)(QWidget*)) const { return f(wall.widget()); }
        QJsonDocument* operator()(QJsonDocument* (*f)(const QJsonDocument*)) const { return f(&document); }
        QJsonDocument* operator()(QJsonDocument* (*f)()) const { return f(); }
    };
    if (!leavesTheProcess(function.name))
        LD_Release(std::visit(Caller{wall, document}, function.address));
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    fuzz::initialize(argc, argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzWall wall;
    fuzz::Input input(data, size);
    while (input) {
        const std::string line = input.takeUntil('\n');
        const std::size_t blank = std::min(line.find(' '), line.size());
        const QByteArray text = QByteArray::fromStdString(line.substr(blank));
        call(wall, find(std::string_view(line).substr(0, blank)), QJsonDocument::fromJson(text));
        wall.runEvents();
    }
    return 0;
}
