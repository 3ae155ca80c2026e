#include "simulator/line.h"

#include "tests/support/errorof.h"
#include "tests/support/temporarydirectory.h"
#include "tests/unit/simulator/lineclient.h"
#include "tests/unit/simulator/wire.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QThread>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

using namespace simulator;

namespace {

const QByteArray CheckRequest = wire("<02>0100XRN00LL00002016<03>C1<0D><0A>");
const char CheckReply[] = "<02>0100X0000000000<03>02<0D><0A>";
constexpr int CheckReplySize = 21;

LineSettings withFaults(std::initializer_list<const char*> faults) {
    LineSettings settings;
    settings.stations = {1, 2};
    for (const char* fault : faults)
        settings.faults.push_back(*parseFault(QLatin1String(fault)));
    return settings;
}

std::string checked(LineClient& client) {
    return shown(client.exchange(CheckRequest, CheckReplySize));
}

/** Opens @p path as soon as that is possible. */
bool openSoon(LineClient& client, const QString& path) {
    QElapsedTimer waited;
    waited.start();
    while (!client.open(path)) {
        if (waited.elapsed() > 5000)
            return false;
        QThread::msleep(1);
    }
    return true;
}

/** Waits for a condition that another thread makes true. */
template <typename Condition>
bool soon(Condition condition) {
    QElapsedTimer waited;
    waited.start();
    while (!condition()) {
        if (waited.elapsed() > 5000)
            return false;
        QThread::msleep(1);
    }
    return true;
}

} // namespace

TEST(SimulatorLine, AnswersOnAPseudoTerminal) {
    Line line(makePtyPort(), {});
    ASSERT_EQ(shown(errorOf(line.start())), "");
    EXPECT_TRUE(line.devicePath().startsWith(QLatin1String("/dev/pts/")));
    LineClient client;
    ASSERT_TRUE(client.open(line.devicePath()));
    EXPECT_EQ(checked(client), CheckReply);
    EXPECT_EQ(line.counters().replies, 1u);
}

TEST(SimulatorLine, PassesEveryByteOfAPseudoTerminalAsItIs) {
    QByteArray all;
    for (int byte = 0; byte < 256; ++byte)
        all += char(byte);
    LineSettings settings;
    Fault noise;
    noise.kind = Fault::Kind::NoiseBefore;
    noise.bytes = all;
    settings.faults = {noise};
    Line line(makePtyPort(), settings);
    ASSERT_EQ(shown(errorOf(line.start())), "");
    LineClient client;
    ASSERT_TRUE(client.open(line.devicePath()));
    client.write(all + CheckRequest);
    EXPECT_EQ(shown(client.read(256 + CheckReplySize)), shown(all) + CheckReply);
}

TEST(SimulatorLine, SurvivesClientsThatComeAndGo) {
    Line line(makePtyPort(), {});
    ASSERT_EQ(shown(errorOf(line.start())), "");
    const QString path = line.devicePath();
    for (int i = 0; i < 5; ++i) {
        LineClient client;
        ASSERT_TRUE(client.open(path));
        EXPECT_EQ(checked(client), CheckReply) << i;
    }
    EXPECT_EQ(line.devicePath(), path);
}

TEST(SimulatorLine, ANewClientDoesNotSeeTheRepliesToTheLastOne) {
    std::atomic<bool> gone{false};
    LineSettings settings = withFaults({});
    settings.log = [&](const QString& text) {
        gone = gone || text.endsWith(QLatin1String(": no longer open"));
    };
    Line line(makePtyPort(), settings);
    ASSERT_EQ(shown(errorOf(line.start())), "");
    LineClient client;
    ASSERT_TRUE(client.open(line.devicePath()));
    client.write(CheckRequest);
    EXPECT_EQ(shown(client.read(1)), "<02>") << "the rest waits unread";
    client.close();
    ASSERT_TRUE(soon([&] { return gone.load(); }));
    ASSERT_TRUE(client.open(line.devicePath()));
    EXPECT_EQ(shown(client.exchange(readRequest(2, 0x2016, 1), CheckReplySize)),
              "<02>0200X0000000000<03>01<0D><0A>");
}

TEST(SimulatorLine, AClientThatReservedTheTerminalAndDiedDoesNotBlockTheNext) {
    // Root may open a reserved terminal, so this line belongs to someone else.
    const uid_t user = ::geteuid();
    if (user == 0) {
        ASSERT_EQ(::seteuid(65534), 0);
    }
    {
        Line line(makePtyPort(), {});
        ASSERT_EQ(shown(errorOf(line.start())), "");
        LineClient client;
        ASSERT_TRUE(client.open(line.devicePath()));
        ASSERT_EQ(::ioctl(client.descriptor(), TIOCEXCL), 0);
        EXPECT_EQ(checked(client), CheckReply);
        client.close();
        EXPECT_TRUE(openSoon(client, line.devicePath()));
        EXPECT_EQ(checked(client), CheckReply);
    }
    ASSERT_EQ(::seteuid(user), 0);
}

TEST(SimulatorLine, ALinkNamesThePseudoTerminalWhileTheLineRuns) {
    TemporaryDirectory directory;
    const QString link = directory.filePath(QLatin1String("dmc50"));
    {
        Line line(makePtyPort(link), {});
        ASSERT_EQ(shown(errorOf(line.start())), "");
        EXPECT_EQ(line.devicePath(), link);
        EXPECT_TRUE(QFileInfo(link).symLinkTarget().startsWith(QLatin1String("/dev/pts/")));
        LineClient client;
        ASSERT_TRUE(client.open(link));
        EXPECT_EQ(checked(client), CheckReply);
    }
    EXPECT_FALSE(QFileInfo(link).isSymLink());
}

TEST(SimulatorLine, AnOldLinkIsReplacedAndAFileIsNot) {
    TemporaryDirectory directory;
    const QString link = directory.filePath(QLatin1String("dmc50"));
    ASSERT_EQ(::symlink("/dev/null", qPrintable(link)), 0);
    EXPECT_EQ(shown(errorOf(Line(makePtyPort(link), {}).start())), "");

    directory.write(QLatin1String("file"), "precious");
    const QString file = directory.filePath(QLatin1String("file"));
    EXPECT_EQ(errorOf(Line(makePtyPort(file), {}).start()),
              file + QLatin1String(": there is a file of this name; it is left alone"));
    EXPECT_EQ(shown(directory.read(QLatin1String("file"))), "precious");
}

TEST(SimulatorLine, AnswersOnTcpOneClientAfterTheOther) {
    Line line(makeTcpPort(QLatin1String("127.0.0.1"), 0), {});
    ASSERT_EQ(shown(errorOf(line.start())), "");
    EXPECT_FALSE(line.devicePath().endsWith(QLatin1String(":0")));
    LineClient first;
    LineClient second;
    ASSERT_TRUE(first.open(line.devicePath()));
    EXPECT_EQ(checked(first), CheckReply);
    ASSERT_TRUE(second.open(line.devicePath()));
    second.write(CheckRequest);
    EXPECT_EQ(checked(first), CheckReply);
    first.close();
    EXPECT_EQ(shown(second.read(CheckReplySize)), CheckReply);
}

TEST(SimulatorLine, APortThatIsTakenIsNamed) {
    Line line(makeTcpPort(QLatin1String("127.0.0.1"), 0), {});
    ASSERT_EQ(shown(errorOf(line.start())), "");
    const QString path = line.devicePath();
    Line other(
        makeTcpPort(QLatin1String("127.0.0.1"), path.section(QLatin1Char(':'), -1).toUShort()), {});
    EXPECT_EQ(errorOf(other.start()),
              path + QLatin1String(": The bound address is already in use"));
}

TEST(SimulatorLine, AnswersOnASerialDevice) {
    // A pseudo-terminal seen from its other end stands for the device.
    LineClient far_end;
    ASSERT_TRUE(far_end.open(QLatin1String("/dev/ptmx")));
    ASSERT_EQ(::unlockpt(far_end.descriptor()), 0);
    Line line(makeSerialPort(QString::fromLocal8Bit(::ptsname(far_end.descriptor())), 38400), {});
    ASSERT_EQ(shown(errorOf(line.start())), "");
    EXPECT_EQ(checked(far_end), CheckReply);
    termios mode = {};
    ASSERT_EQ(::tcgetattr(far_end.descriptor(), &mode), 0);
    EXPECT_EQ(::cfgetospeed(&mode), speed_t(B38400));
}

TEST(SimulatorLine, ASerialDeviceThatGoesAwayIsTriedAgain) {
    LineClient far_end;
    ASSERT_TRUE(far_end.open(QLatin1String("/dev/ptmx")));
    ASSERT_EQ(::unlockpt(far_end.descriptor()), 0);
    std::atomic<int> lines_logged{0};
    LineSettings settings;
    settings.log = [&](const QString&) { ++lines_logged; };
    Line line(makeSerialPort(QString::fromLocal8Bit(::ptsname(far_end.descriptor())), 38400),
              settings);
    ASSERT_EQ(shown(errorOf(line.start())), "");
    far_end.close();
    EXPECT_TRUE(soon([&] { return lines_logged == 1; }));
}

TEST(SimulatorLine, AMissingDeviceIsNamed) {
    Line line(makeSerialPort(QLatin1String("/dev/nowhere"), 38400), {});
    EXPECT_EQ(shown(errorOf(line.start())), "/dev/nowhere: No such file or directory");
}

TEST(SimulatorLine, AStationCanBeMadeSilentAndRecover) {
    Line line(makePtyPort(), withFaults({}));
    ASSERT_EQ(shown(errorOf(line.start())), "");
    LineClient client;
    ASSERT_TRUE(client.open(line.devicePath()));
    line.setFault(1, Fault());
    client.write(CheckRequest);
    EXPECT_TRUE(soon([&] { return line.counters().faults == 1; }));
    const QByteArray other = client.exchange(readRequest(2, 0x2016, 1), CheckReplySize);
    EXPECT_EQ(shown(other), "<02>0200X0000000000<03>01<0D><0A>");
    line.clearFault(1);
    EXPECT_EQ(checked(client), CheckReply);
}

TEST(SimulatorLine, AClosedTcpLineDropsItsClientAndComesBack) {
    Line line(makeTcpPort(QLatin1String("127.0.0.1"), 0), withFaults({"close:on=2,ms=10"}));
    ASSERT_EQ(shown(errorOf(line.start())), "");
    LineClient client;
    ASSERT_TRUE(client.open(line.devicePath()));
    EXPECT_EQ(checked(client), CheckReply);
    client.write(CheckRequest);
    EXPECT_TRUE(client.seesTheEnd());
    ASSERT_TRUE(openSoon(client, line.devicePath()));
    EXPECT_EQ(checked(client), CheckReply);
}

TEST(SimulatorLine, AClosedPseudoTerminalComesBackUnderItsLink) {
    TemporaryDirectory directory;
    const QString link = directory.filePath(QLatin1String("dmc50"));
    Line line(makePtyPort(link), withFaults({"close:on=2,ms=10"}));
    ASSERT_EQ(shown(errorOf(line.start())), "");
    LineClient client;
    ASSERT_TRUE(client.open(link));
    EXPECT_EQ(checked(client), CheckReply);
    client.write(CheckRequest);
    EXPECT_TRUE(client.seesTheEnd());
    ASSERT_TRUE(openSoon(client, link));
    EXPECT_EQ(checked(client), CheckReply);
}

TEST(SimulatorLine, StopsWhileAReplyIsFarAway) {
    Line line(makePtyPort(), withFaults({"late:ms=3600000"}));
    ASSERT_EQ(shown(errorOf(line.start())), "");
    LineClient client;
    ASSERT_TRUE(client.open(line.devicePath()));
    client.write(CheckRequest);
    ASSERT_TRUE(soon([&] { return line.counters().faults == 1; }));
    line.stop();
    EXPECT_EQ(line.counters().bytes_sent, 0u);
    EXPECT_TRUE(client.seesTheEnd());
}

TEST(SimulatorLine, AnExchangeTakesAtLeastItsWireTime) {
    LineSettings settings;
    settings.timing = {38400, 5};
    Line line(makePtyPort(), settings);
    ASSERT_EQ(shown(errorOf(line.start())), "");
    LineClient client;
    ASSERT_TRUE(client.open(line.devicePath()));
    QElapsedTimer taken;
    taken.start();
    EXPECT_EQ(checked(client), CheckReply);
    EXPECT_GE(taken.nsecsElapsed(), settings.timing.wireTime(46) + 5000000);
}

TEST(SimulatorLine, LogsEachRequestFromItsOwnThread) {
    QStringList log; // the line's thread until stop()
    LineSettings settings = withFaults({"late:ms=1"});
    settings.log = [&](const QString& text) { log += text; };
    Line line(makeTcpPort(QLatin1String("127.0.0.1"), 0), settings);
    ASSERT_EQ(shown(errorOf(line.start())), "");
    LineClient client;
    ASSERT_TRUE(client.open(line.devicePath()));
    EXPECT_EQ(checked(client), CheckReply);
    line.stop();
    EXPECT_EQ(shown(log.value(0)), shown(line.devicePath()) + ": a client connected");
    EXPECT_EQ(shown(log.value(1)), "station 1: RN 1 from 0x00002016, fault late ms=1");
}
