#include "host/line/tcpchannel.h"

#include "host/line/portaddress.h"
#include "tests/support/errorof.h"

#include <QTcpServer>
#include <QTcpSocket>

#include <gtest/gtest.h>

#include <memory>
#include <thread>

using namespace host;

namespace {

constexpr int LongWaitMsecs = 30000; // a test that waits for it has failed

class TcpChannelTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(m_server.listen(QHostAddress::LocalHost)); }

    QTcpSocket* accept() {
        return m_server.waitForNewConnection(LongWaitMsecs) ? m_server.nextPendingConnection()
                                                            : nullptr;
    }

    QTcpServer m_server; // owns the accepted sockets
};

} // namespace

TEST_F(TcpChannelTest, CarriesBytesBothWays) {
    TcpChannel channel(QStringLiteral("127.0.0.1"), m_server.serverPort());
    EXPECT_EQ(errorOf(channel.open()), QString());
    QTcpSocket* peer = accept();
    ASSERT_TRUE(peer);

    ASSERT_TRUE(channel.write("ask\r\n", 5, LongWaitMsecs));
    ASSERT_TRUE(peer->waitForReadyRead(LongWaitMsecs));
    EXPECT_EQ(peer->readAll(), QByteArray("ask\r\n"));

    peer->write("answer");
    ASSERT_TRUE(peer->waitForBytesWritten(LongWaitMsecs));
    char buffer[16];
    ASSERT_EQ(channel.read(buffer, sizeof buffer, LongWaitMsecs), 6);
    EXPECT_EQ(QByteArray(buffer, 6), QByteArray("answer"));
}

TEST_F(TcpChannelTest, ReportsAPeerThatCloses) {
    TcpChannel channel(QStringLiteral("localhost"), m_server.serverPort());
    ASSERT_TRUE(channel.open());
    QTcpSocket* peer = accept();
    ASSERT_TRUE(peer);
    peer->close();
    char byte;
    EXPECT_EQ(errorOf(channel.read(&byte, 1, LongWaitMsecs)),
              QStringLiteral("the other end has closed the line"));
}

TEST_F(TcpChannelTest, SurvivesWritesToAPeerThatIsGone) {
    TcpChannel channel(QStringLiteral("127.0.0.1"), m_server.serverPort());
    ASSERT_TRUE(channel.open());
    delete accept();
    m_server.close();
    // The first write may still be taken; its reset makes a later one fail.
    bool taken = true;
    for (int i = 0; i < 1000 && taken; ++i) {
        taken = channel.write("x", 1, LongWaitMsecs).has_value();
        std::this_thread::yield();
    }
    EXPECT_FALSE(taken);
}

TEST_F(TcpChannelTest, SaysWhenNobodyListens) {
    const quint16 port = m_server.serverPort();
    m_server.close();
    TcpChannel channel(QStringLiteral("127.0.0.1"), port);
    EXPECT_EQ(errorOf(channel.open()), QStringLiteral("Connection refused"));
}

TEST_F(TcpChannelTest, SaysWhenTheHostIsUnknown) {
    TcpChannel channel(QStringLiteral("no-such-host.invalid"), 4001);
    EXPECT_FALSE(errorOf(channel.open()).isEmpty());
}

TEST_F(TcpChannelTest, CancelEndsAWaitAtOnce) {
    TcpChannel channel(QStringLiteral("127.0.0.1"), m_server.serverPort());
    ASSERT_TRUE(channel.open());
    std::thread canceller([&] { channel.cancel(); });
    char byte;
    EXPECT_EQ(channel.read(&byte, 1, LongWaitMsecs), 0);
    canceller.join();
    EXPECT_FALSE(channel.open()) << "a cancelled channel is of no use";
}

TEST(PortAddress, TellsDevicesFromSerialServers) {
    EXPECT_EQ(parsePortAddress(QStringLiteral("/dev/pts/5"))->path, QStringLiteral("/dev/pts/5"));
    const auto server = parsePortAddress(QStringLiteral("tcp://10.0.0.7:4001"));
    ASSERT_TRUE(server);
    EXPECT_EQ(server->host, QStringLiteral("10.0.0.7"));
    EXPECT_EQ(server->port, 4001);
    EXPECT_EQ(parsePortAddress(QStringLiteral("tcp://[::1]:4001"))->host, QStringLiteral("::1"));
}

TEST(PortAddress, RefusesWhatIsNeitherAndSaysWhatWouldBeRight) {
    for (const char* text : {"", "ttyUSB0", "tcp://10.0.0.7", "tcp://:4001", "tcp://h:99999",
                             "http://h:80", "tcp://h:4001/x"}) {
        EXPECT_EQ(errorOf(parsePortAddress(QString::fromLatin1(text))),
                  QStringLiteral("'%1' is not a port; write a device such as /dev/ttyUSB0 "
                                 "or a serial server such as tcp://192.168.0.7:4001")
                      .arg(QString::fromLatin1(text)));
    }
}

TEST(PortAddress, NamesTheChannelAsTheOperatorDoes) {
    const DeviceSetting setting(DEVICE_RS485, QStringLiteral("COM2"), 38400, 8, 0, 2);
    for (const char* text : {"/dev/ttyUSB0", "tcp://10.0.0.7:4001", "tcp://[::1]:4001"}) {
        const auto address = parsePortAddress(QString::fromLatin1(text));
        ASSERT_TRUE(address);
        EXPECT_EQ(makeChannel(*address, setting)->name(), QString::fromLatin1(text));
    }
}
