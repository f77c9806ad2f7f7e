// Lines of a function's name and its document, called one after the other on a wall with a stream: "LD_Pause {...}".

#include "fuzz/FuzzWall.h"
#include "fuzz/Input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::FuzzWall wall;
    fuzz::Input input(data, size);
    while (input) {
        wall.call(input.takeUntil('\n'));
        wall.runEvents();
    }
    return 0;
}
