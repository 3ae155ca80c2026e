#include "host/transfer/privatestick.h"

#include "tests/support/errorof.h"

#include <gtest/gtest.h>

using namespace host;

TEST(PrivateStickTest, WantsAFolder) {
    EXPECT_EQ(errorOf(mountPrivateStick(QStringLiteral("/nowhere"))),
              QStringLiteral("/nowhere: no such folder"));
    EXPECT_EQ(errorOf(mountPrivateStick(QStringLiteral("/dev/null"))),
              QStringLiteral("/dev/null: no such folder"));
}
