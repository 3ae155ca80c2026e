#include "host/session/linkreader.h"

#include "tests/unit/line/scriptedchannel.h"
#include "tests/unit/session/datatag.h"
#include "tests/unit/session/scripteddriver.h"

#include <gtest/gtest.h>

using namespace host;

namespace {

const QString Silence =
    QStringLiteral("read station id#1 start address 00000010:DMC50 no response");

QByteArray dword(int value) {
    return QByteArray(1, char(value)) + QByteArray(3, '\0');
}

/** Two stations of one tag each; the driver makes two attempts. */
class LinkReaderTest : public ::testing::Test {
protected:
    LinkReaderTest() {
        const DeviceSetting device(DEVICE_RS485, QStringLiteral("COM2"), 38400, 8, 0, 2);
        PortOptions options;
        options.clock = &m_clock;
        options.usecs = [this] { return m_usecs; };
        m_session = std::make_unique<LinkSession>(
            std::make_unique<HostPort>(
                std::make_unique<ScriptedChannel>(), device, DriverSetting(3000, 1, 1, 20),
                [](const QString&) {}, options),
            std::unique_ptr<DriverInterface>(&m_driver), m_clock);
        m_reader = std::make_unique<LinkReader>(
            *m_session, m_board, std::vector<TagId>{0, 1},
            MomentSource{[this] { return m_usecs; }, [] { return qint64(70000); }});
    }

    Exchange exchange(int station, const std::vector<quint32>& addresses) const {
        Exchange exchange;
        exchange.station = station;
        exchange.addresses = addresses;
        exchange.sent_usecs = m_usecs - 2000;
        exchange.done_usecs = m_usecs - 1000;
        return exchange;
    }

    void show(const std::vector<Exchange>& shown, bool is_sure = true) {
        m_reader->take(shown);
        m_reader->publish(is_sure);
    }

    void showFailure(const QString& text) {
        m_driver.error = text;
        show({});
        m_driver.error.clear();
    }

    SimulatedClock m_clock;
    qint64 m_usecs = 5000000;
    ScriptedDriver& m_driver = *new ScriptedDriver; // the session's
    ValueBoard m_board{{dataTag("NA10", 1), dataTag("NA20", 2)}, m_clock};
    std::unique_ptr<LinkSession> m_session;
    std::unique_ptr<LinkReader> m_reader;
};

} // namespace

TEST_F(LinkReaderTest, ReadsJustWhatAnExchangeHasBroughtAndGivesItItsMoment) {
    m_driver.values[QStringLiteral("NA20")] = dword(7);
    show({exchange(2, {0x20})});
    EXPECT_EQ(m_driver.asked, QStringList(QStringLiteral("read NA20 of 2")));
    const TagState state = m_board.read(1);
    EXPECT_EQ(state.quality, Quality::Good);
    EXPECT_EQ(state.data, dword(7));
    EXPECT_EQ(state.when.monotonic_usecs, m_usecs - 1000);
    EXPECT_EQ(state.when.utc_msecs, 70000 - 1);
    EXPECT_EQ(m_board.read(0).sequence, 0u);
}

TEST_F(LinkReaderTest, AsksTheDriverNothingThatItWouldHaveToFetch) {
    Exchange write = exchange(1, {0x10});
    write.is_write = true;
    show({write, exchange(1, {0x11}), exchange(3, {0x10}), exchange(1, {0x10, 0x11})});
    show({});
    EXPECT_EQ(m_driver.asked, QStringList());
}

TEST_F(LinkReaderTest, AsksTheDriverNothingWhileItIsInError) {
    m_driver.error = Silence;
    show({exchange(1, {0x10})});
    EXPECT_EQ(m_driver.asked, QStringList());
}

TEST_F(LinkReaderTest, ReadsWhileTheDriverStillShowsWhyItDidNotStart) {
    m_driver.error = QStringLiteral("can not open database");
    show({exchange(1, {0x10})});
    EXPECT_EQ(m_board.read(0).quality, Quality::Good);
}

TEST_F(LinkReaderTest, DropsWhatIsNotSure) {
    show({exchange(1, {0x10})}, false);
    EXPECT_EQ(m_board.read(0).sequence, 0u);
    show({});
    EXPECT_EQ(m_board.read(0).sequence, 0u);
}

TEST_F(LinkReaderTest, FailsATagWhenTheDriverGivesItsFrameUp) {
    showFailure(Silence);
    EXPECT_EQ(m_board.read(0).sequence, 0u) << "it is tried again";
    showFailure(Silence);
    EXPECT_EQ(m_board.read(0).quality, Quality::Bad);
    EXPECT_EQ(m_board.read(0).text, Silence);
    EXPECT_EQ(m_board.read(1).sequence, 0u);
}

TEST_F(LinkReaderTest, CountsTheAttemptsFromTheLastSuccessOn) {
    showFailure(Silence);
    show({exchange(1, {0x10})});
    showFailure(Silence);
    EXPECT_EQ(m_board.read(0).quality, Quality::Good);
    showFailure(Silence);
    EXPECT_EQ(m_board.read(0).quality, Quality::Stale);
}

TEST_F(LinkReaderTest, BlamesNoTagForWhatIsNotAboutItsFrame) {
    for (const char* text :
         {"write station id#1 address 00000010DMC50 no response",
          "read station id#1 start address 00000011:DMC50 no response",
          "read station id#3 start address 00000010:DMC50 no response", "can not open database"}) {
        showFailure(QLatin1String(text));
        showFailure(QLatin1String(text));
    }
    EXPECT_EQ(m_board.read(0).sequence, 0u);
    EXPECT_EQ(m_board.read(1).sequence, 0u);
}

TEST_F(LinkReaderTest, DoesNotReadWhatTheDriverMayForgetAfterAChangeOfSession) {
    m_reader->sessionWas(m_board.tag(0));
    show({exchange(1, {0x10})});
    EXPECT_EQ(m_driver.asked, QStringList());
    show({exchange(1, {0x10})});
    EXPECT_EQ(m_board.read(0).quality, Quality::Good);
}

TEST_F(LinkReaderTest, ReadsAtOnceWhatOnlyTheNewSessionHas) {
    m_reader->sessionWas(m_board.tag(0));
    show({exchange(2, {0x20})});
    EXPECT_EQ(m_board.read(1).quality, Quality::Good);
    show({exchange(1, {0x10})});
    EXPECT_EQ(m_board.read(0).quality, Quality::Good);
}

TEST_F(LinkReaderTest, FailsAllTagsAtOnce) {
    m_reader->failAll(QStringLiteral("can not open database"));
    EXPECT_EQ(m_board.read(0).text, QString("can not open database"));
    EXPECT_EQ(m_board.read(1).text, QString("can not open database"));
}
