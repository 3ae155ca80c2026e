// A panel polls for years: a frame on the line must not touch the heap.
#include "tests/support/memorycontroller.h"
#include "tests/unit/dmc50v3/polledblock.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>

#include <dlfcn.h>

namespace {
std::atomic<bool> counting{false};
std::atomic<int> allocations{0};

void count() {
    if (counting)
        ++allocations;
}

void* countedAllocation(std::size_t size) {
    count();
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

// Qt's containers take their memory without operator new. The sanitizers bring a
// malloc of their own, so they see only half.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
static const bool CountsMalloc = false;
#else
static const bool CountsMalloc = true;

extern "C" void* malloc(std::size_t size) noexcept {
    typedef void* (*Malloc)(std::size_t);
    static const Malloc original = reinterpret_cast<Malloc>(dlsym(RTLD_NEXT, "malloc"));
    count();
    return original(size);
}
extern "C" void* realloc(void* memory, std::size_t size) noexcept {
    typedef void* (*Realloc)(void*, std::size_t);
    static const Realloc original = reinterpret_cast<Realloc>(dlsym(RTLD_NEXT, "realloc"));
    count();
    return original(memory, size);
}
#endif

TEST(PollingAllocation, TheCounterSeesQtsContainersToo) {
    allocations = 0;
    counting = true;
    const QByteArray bytes(100, 'x');
    counting = false;
    EXPECT_EQ(allocations > 0, CountsMalloc);
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
