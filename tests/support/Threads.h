#pragma once

#include <thread>
#include <vector>

// Runs `body`, with the number of the thread, on so many threads at once, until all have ended.
template <class Body> void onThreads(int count, Body body)
{
    std::vector<std::thread> threads;
    for (int number = 0; number < count; ++number)
        threads.emplace_back(body, number);
    for (std::thread& thread : threads)
        thread.join();
}
