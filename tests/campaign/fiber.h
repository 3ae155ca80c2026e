#ifndef TESTS_CAMPAIGN_FIBER_H
#define TESTS_CAMPAIGN_FIBER_H

#include <ucontext.h>

#include <cstddef>
#include <functional>
#include <memory>

namespace campaign {

/** A flow of control with a stack of its own, inside one thread: it runs until it
 *  hands back, so nothing ever runs beside it. */
class Fiber {
public:
    explicit Fiber(std::function<void()> body);
    ~Fiber();
    Fiber(const Fiber&) = delete;
    Fiber& operator=(const Fiber&) = delete;

    /** Goes on with the fiber until it hands back or ends. Never from a fiber. */
    void resume();

    /** Goes back to who resumed this fiber, the present one. */
    void handBack();

    bool hasEnded() const { return m_ended; }

    /** The one that runs now, or null. */
    static Fiber* current();

private:
    static void enter();
    void leave();

    const std::function<void()> m_body;
    const std::unique_ptr<char[]> m_stack;
    ucontext_t m_context = {};
    ucontext_t m_resumer = {};
    bool m_ended = false;

    // For AddressSanitizer, which follows the stacks.
    void* m_shadow = nullptr;
    const void* m_resumer_stack = nullptr;
    std::size_t m_resumer_size = 0;
};

} // namespace campaign

#endif
