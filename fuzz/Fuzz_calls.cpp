// Lines of a function's name and its document, called one after the other on a wall with a stream: "LD_Pause {...}".

#include "fuzz/FuzzWall.h"
#include "fuzz/Input.h"
#include "tests/support/Functions.h"

#include <functional>
#include <string_view>

namespace {

using functions::Function;

// A name that a mutation has spoilt stands for some function as well.
const Function& find(std::string_view name)
{
    const std::vector<Function>& all = functions::all();
    for (const Function& function : all) {
        if (function.name == name)
            return function;
    }
    return all[std::hash<std::string_view>{}(name) % all.size()];
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::FuzzWall wall;
    fuzz::Input input(data, size);
    while (input) {
        const std::string line = input.takeUntil('\n');
        const std::size_t blank = std::min(line.find(' '), line.size());
        const QByteArray text = QByteArray::fromStdString(line.substr(blank));
        const QJsonDocument request = QJsonDocument::fromJson(text);
        LD_Release(find(std::string_view(line).substr(0, blank))(wall.widget(), &request));
        wall.runEvents();
    }
    return 0;
}
