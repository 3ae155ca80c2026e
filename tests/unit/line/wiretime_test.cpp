#include "host/line/wiretime.h"

#include <gtest/gtest.h>

using namespace host;

namespace {

WireTime line(int baud, int databits, int parity) {
    return WireTime(DeviceSetting(DEVICE_RS485, QString(), baud, databits, 0, parity));
}

} // namespace

TEST(WireTimeTest, CallsALineQuietAfterThreeAndAHalfCharactersOr20Ms) {
    EXPECT_EQ(line(38400, 8, 2).quietMsecs(), 20);
    EXPECT_EQ(line(1200, 8, 2).quietMsecs(), 33); // 3.5 x 11 bits at 1200 baud: 32.08 ms
    EXPECT_EQ(line(600, 7, 0).quietMsecs(), 53);  // 3.5 x 9 bits at 600 baud: 52.5 ms
}

TEST(WireTimeTest, RoundsTheTimeOfCharactersUp) {
    EXPECT_EQ(line(38400, 8, 2).msecs(830), 238); // 830 x 11 bits: 237.8 ms
    EXPECT_EQ(line(38400, 8, 2).msecs(0), 0);
    EXPECT_EQ(line(9600, 8, 0).msecs(96), 100); // 96 x 10 bits
}
