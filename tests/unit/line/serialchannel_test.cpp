#include "host/line/serialchannel.h"

#include "tests/support/errorof.h"
#include "tests/unit/line/ptypair.h"

#include <QTemporaryFile>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include <thread>

using namespace host;

namespace {

const DeviceSetting Setting(DEVICE_RS485, QStringLiteral("COM2"), 38400, 8, 0, 2);
constexpr int LongWaitMsecs = 30000; // a test that waits for it has failed

QByteArray readAll(ByteChannel& channel, int count) {
    QByteArray bytes;
    char buffer[64];
    while (bytes.size() < count) {
        const int got = channel.read(buffer, sizeof buffer, LongWaitMsecs).value_or(-1);
        if (got < 1)
            break;
        bytes.append(buffer, got);
    }
    return bytes;
}

/** Looks like any user for its life, also when root runs the tests. */
class PlainUser {
public:
    PlainUser() : m_was(geteuid()) { m_changed = m_was == 0 && seteuid(65534) == 0; }
    ~PlainUser() {
        if (m_changed && seteuid(m_was) != 0)
            abort();
    }

private:
    const uid_t m_was;
    bool m_changed;
};

} // namespace

TEST(SerialChannel, CarriesBytesBothWaysOverAPty) {
    PtyPair pty;
    SerialChannel channel(pty.slavePath(), Setting);
    EXPECT_EQ(errorOf(channel.open()), QString());

    ASSERT_TRUE(channel.write("\x02"
                              "ab\r\n",
                              5, LongWaitMsecs));
    EXPECT_EQ(pty.receive(5), QByteArray("\x02"
                                         "ab\r\n"));

    pty.send(QByteArray("\x02\x00\xff\x11\x13\r\n", 7));
    EXPECT_EQ(readAll(channel, 7), QByteArray("\x02\x00\xff\x11\x13\r\n", 7));
}

TEST(SerialChannel, ReturnsNothingWhenTheLineStaysSilent) {
    PtyPair pty;
    SerialChannel channel(pty.slavePath(), Setting);
    ASSERT_TRUE(channel.open());
    char byte;
    EXPECT_EQ(channel.read(&byte, 1, 1), 0);
}

TEST(SerialChannel, DiscardTakesAwayWhatHasArrived) {
    PtyPair pty;
    SerialChannel channel(pty.slavePath(), Setting);
    ASSERT_TRUE(channel.open());
    pty.send("stale");
    char first;
    ASSERT_EQ(channel.read(&first, 1, LongWaitMsecs), 1); // so the rest is there too

    EXPECT_EQ(channel.discard(), QByteArray("tale"));
    EXPECT_EQ(channel.discard(), QByteArray());
    pty.send("new");
    EXPECT_EQ(readAll(channel, 3), QByteArray("new"));
}

TEST(SerialChannel, ReportsALostLineAndOpensTheNextOne) {
    auto pty = std::make_unique<PtyPair>();
    SerialChannel channel(pty->slavePath(), Setting);
    ASSERT_TRUE(channel.open());
    pty->unplug();

    char byte;
    EXPECT_FALSE(errorOf(channel.read(&byte, 1, LongWaitMsecs)).isEmpty());
    EXPECT_FALSE(channel.open());
    EXPECT_FALSE(channel.read(&byte, 1, LongWaitMsecs)) << "a closed channel has no line";
}

TEST(SerialChannel, SaysWhenTheDeviceDoesNotExist) {
    SerialChannel channel(QStringLiteral("/dev/ttyUSB99"), Setting);
    EXPECT_EQ(errorOf(channel.open()), QStringLiteral("no such device"));
}

TEST(SerialChannel, SaysWhoMayUseADeviceWithoutPermission) {
    QTemporaryFile device(QStringLiteral("/tmp/deviceXXXXXX"));
    ASSERT_TRUE(device.open());
    ASSERT_TRUE(device.setPermissions(QFileDevice::Permissions()));
    SerialChannel channel(device.fileName(), Setting);

    const PlainUser user;
    const QString error = errorOf(channel.open());
    EXPECT_TRUE(error.startsWith(QStringLiteral("permission denied; the group ")))
        << qPrintable(error);
}

TEST(SerialChannel, SaysWhenAnotherProgramHasTheDevice) {
    PtyPair pty;
    SerialChannel first(pty.slavePath(), Setting);
    ASSERT_TRUE(first.open());
    SerialChannel second(pty.slavePath(), Setting);
    EXPECT_EQ(errorOf(second.open()), QStringLiteral("in use by another program"));
}

TEST(SerialChannel, OpensAPtyThatAnEarlierProgramLeftSetUp) {
    PtyPair pty;
    const int left_open = ::open(qPrintable(pty.slavePath()), O_RDWR | O_NOCTTY);
    {
        SerialChannel killed(pty.slavePath(), Setting);
        ASSERT_TRUE(killed.open());
        termios as_set = {};
        ASSERT_EQ(tcgetattr(left_open, &as_set), 0);
        killed.close();
        ASSERT_EQ(tcsetattr(left_open, TCSANOW, &as_set), 0); // as if nothing had restored it
    }
    SerialChannel next(pty.slavePath(), Setting);
    EXPECT_EQ(errorOf(next.open()), QString());
    ::close(left_open);
}

TEST(SerialChannel, CancelEndsAWaitAtOnceAndForGood) {
    PtyPair pty;
    SerialChannel channel(pty.slavePath(), Setting);
    ASSERT_TRUE(channel.open());
    int got = -1;
    std::thread reader([&] {
        char byte;
        got = channel.read(&byte, 1, LongWaitMsecs).value_or(-1);
    });
    channel.cancel();
    reader.join();
    EXPECT_EQ(got, 0);

    pty.send("x");
    char byte;
    EXPECT_EQ(channel.read(&byte, 1, LongWaitMsecs), 0);
    EXPECT_TRUE(channel.isCancelled());
}

TEST(SerialChannel, MayBeOpenedInOneThreadAndUsedInAnother) {
    PtyPair pty;
    SerialChannel channel(pty.slavePath(), Setting);
    ASSERT_TRUE(channel.open());
    pty.send("answer\n");
    QByteArray got;
    std::thread reader([&] {
        got = readAll(channel, 7);
        channel.close();
    });
    reader.join();
    EXPECT_EQ(got, QByteArray("answer\n"));
}

TEST(SerialChannel, GivesUpAWriteThatTheLineDoesNotTake) {
    PtyPair pty;
    SerialChannel channel(pty.slavePath(), Setting);
    ASSERT_TRUE(channel.open());
    const QByteArray flood(1 << 20, 'x'); // more than a pty holds; nobody reads it
    EXPECT_EQ(errorOf(channel.write(flood.constData(), flood.size(), 20)),
              QStringLiteral("the line takes no more bytes"));
}
