#include "runtime/drivers/polling/linksettings.h"

#include "tests/support/scriptedport.h"

#include <gtest/gtest.h>

TEST(LinkSettings, AFrameIntervalBelowTenMillisecondsIsTen) {
    ScriptedPort port;
    port.m_frame_interval = 5;
    EXPECT_EQ(LinkSettings(port).frame_interval_ms, 10u);
    port.m_frame_interval = 10;
    EXPECT_EQ(LinkSettings(port).frame_interval_ms, 10u);
    port.m_frame_interval = 11;
    EXPECT_EQ(LinkSettings(port).frame_interval_ms, 11u);
}

TEST(LinkSettings, ATimeoutBelowThreeSecondsIsThreeSeconds) {
    ScriptedPort port;
    port.m_timeout = 2999;
    EXPECT_EQ(LinkSettings(port).timeout_ms, 3000);
    port.m_timeout = 3001;
    EXPECT_EQ(LinkSettings(port).timeout_ms, 3001);
    port.m_timeout = -1;
    EXPECT_EQ(LinkSettings(port).timeout_ms, 3000);
}

TEST(LinkSettings, TheWaitBudgetIsATimeoutForEveryAttempt) {
    ScriptedPort port;
    EXPECT_EQ(LinkSettings(port).waitBudgetMsecs(), 3000);
    port.m_timeout = 5000;
    port.m_retries = 2;
    EXPECT_EQ(LinkSettings(port).retries, 2u);
    EXPECT_EQ(LinkSettings(port).waitBudgetMsecs(), 15000);
    port.m_retries = 0xFFFFFFFFu;
    EXPECT_EQ(LinkSettings(port).waitBudgetMsecs(), 5000 * Q_INT64_C(0x100000000));
}
