#ifndef TESTS_SUPPORT_TOGETHER_H
#define TESTS_SUPPORT_TOGETHER_H

#include <atomic>
#include <thread>

/** Calls both with 0 to @p rounds - 1, each in a thread of its own. What a missing
 *  lock does shows after some ten thousand rounds. */
template <typename Here, typename There>
void together(int rounds, Here here, There there) {
    std::atomic<bool> go(false);
    std::thread other([&] {
        go = true;
        for (int round = 0; round < rounds; ++round)
            there(round);
    });
    while (!go)
        std::this_thread::yield();
    for (int round = 0; round < rounds; ++round)
        here(round);
    other.join();
}

#endif
