#ifndef RUNTIME_BASE_FATAL_H
#define RUNTIME_BASE_FATAL_H

/** Ends the program in every build type, after one line that quotes
 *  @p condition on the Qt message output. Never returns. Any thread. */
[[noreturn]] void fatalConditionFailed(const char* condition, const char* file, int line);

/** Broken invariants end the program: a panel that goes on with a broken
 *  project would show wrong values. @p text is the condition as service
 *  people know it; it is part of the contract and is never reformatted. */
#define FATAL_CHECK(condition, text)                                                               \
    do {                                                                                           \
        if (!(condition))                                                                          \
            fatalConditionFailed((text), __FILE__, __LINE__);                                      \
    } while (false)

#endif
