#include "tests/campaign/fiber.h"

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/common_interface_defs.h>
#endif

namespace campaign {

namespace {

constexpr std::size_t StackBytes = 512 * 1024;

Fiber* g_current = nullptr; // the campaign has one thread

#if defined(__SANITIZE_ADDRESS__)
void leaveStack(void** shadow, const void* bottom, std::size_t size) {
    __sanitizer_start_switch_fiber(shadow, bottom, size);
}
void reachStack(void* shadow, const void** bottom, std::size_t* size) {
    __sanitizer_finish_switch_fiber(shadow, bottom, size);
}
#else
void leaveStack(void**, const void*, std::size_t) {}
void reachStack(void*, const void**, std::size_t*) {}
#endif

} // namespace

Fiber::Fiber(std::function<void()> body) : m_body(std::move(body)), m_stack(new char[StackBytes]) {
    getcontext(&m_context);
    m_context.uc_stack.ss_sp = m_stack.get();
    m_context.uc_stack.ss_size = StackBytes;
    makecontext(&m_context, &Fiber::enter, 0);
}

Fiber::~Fiber() = default;

Fiber* Fiber::current() {
    return g_current;
}

void Fiber::resume() {
    g_current = this;
    void* shadow = nullptr;
    leaveStack(&shadow, m_stack.get(), StackBytes);
    swapcontext(&m_resumer, &m_context);
    reachStack(shadow, nullptr, nullptr);
    g_current = nullptr;
}

void Fiber::handBack() {
    leaveStack(&m_shadow, m_resumer_stack, m_resumer_size);
    swapcontext(&m_context, &m_resumer);
    reachStack(m_shadow, &m_resumer_stack, &m_resumer_size);
}

void Fiber::enter() {
    Fiber& fiber = *g_current;
    reachStack(nullptr, &fiber.m_resumer_stack, &fiber.m_resumer_size);
    fiber.m_body();
    fiber.leave();
}

void Fiber::leave() {
    m_ended = true;
    leaveStack(nullptr, m_resumer_stack, m_resumer_size); // this stack is not used again
    setcontext(&m_resumer);
}

} // namespace campaign
