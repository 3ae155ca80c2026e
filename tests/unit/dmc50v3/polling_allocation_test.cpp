// A panel polls for years: a frame on the line must not touch the heap.
#include "tests/support/memorycontroller.h"
#include "tests/unit/dmc50v3/polledblock.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>

namespace {
std::atomic<bool> counting{false};
std::atomic<int> allocations{0};

void* countedAllocation(std::size_t size) {
    if (counting)
        ++allocations;
    void* const memory = std::malloc(size ? size : 1);
    if (!memory)
        std::abort();
    return memory;
}
} // namespace

void* operator new(std::size_t size) {
    return countedAllocation(size);
}
void* operator new[](std::size_t size) {
    return countedAllocation(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

TEST(PollingAllocation, APolledFrameAllocatesNothing) {
    const QByteArray reply = cplFrame("0100X00" + QByteArray("12345678").repeated(50));
    PolledBlock block(50, FixedReplyPort(reply));
    block.probe.cycle(); // takes the session over and meets every address once
    ASSERT_TRUE(block.thread.addrInDataCache(1, 49));

    allocations = 0;
    counting = true;
    for (int i = 0; i < 100; ++i)
        block.probe.cycle();
    counting = false;
    EXPECT_EQ(block.port.m_requests, 101);
    EXPECT_EQ(allocations, 0);
}
