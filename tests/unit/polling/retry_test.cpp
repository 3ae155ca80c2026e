#include "runtime/drivers/polling/retry.h"

#include <gtest/gtest.h>

namespace {

/** Attempts made until the one numbered @p good, from 1 on, succeeds; negative
 *  when none did. */
int attempts(quint32 retries, int good) {
    int made = 0;
    const bool ok = tryRepeatedly(retries, [&] { return ++made == good; });
    return ok ? made : -made;
}

} // namespace

TEST(Retry, EndsWithTheFirstSuccess) {
    EXPECT_EQ(attempts(0, 1), 1);
    EXPECT_EQ(attempts(3, 1), 1);
    EXPECT_EQ(attempts(3, 4), 4);
    EXPECT_EQ(attempts(0xFFFFFFFFu, 100), 100);
}

TEST(Retry, GivesUpAfterOneAttemptAndItsRetries) {
    EXPECT_EQ(attempts(0, 2), -1);
    EXPECT_EQ(attempts(1, 3), -2);
    EXPECT_EQ(attempts(3, 5), -4);
}
