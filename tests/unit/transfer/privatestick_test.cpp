#include "host/transfer/privatestick.h"

#include <gtest/gtest.h>

using namespace host;

TEST(PrivateStickTest, WantsAFolder) {
    QString problem;
    EXPECT_FALSE(mountPrivateStick(QStringLiteral("/nowhere"), problem));
    EXPECT_EQ(problem, QStringLiteral("/nowhere: no such folder"));
    EXPECT_FALSE(mountPrivateStick(QStringLiteral("/dev/null"), problem));
    EXPECT_EQ(problem, QStringLiteral("/dev/null: no such folder"));
}
