#include "host/transfer/recipetransfer.h"

#include "tests/support/memorycontroller.h"
#include "tests/unit/transfer/transferlink.h"

#include <gtest/gtest.h>

using namespace host;

namespace {

using Shown = TransferDriver::Shown;

class RecipeTransferTest : public ::testing::Test {
protected:
    TransferEnd run(TransferKind kind) {
        RecipeTransfer transfer(*link.session, 1, link.clock);
        return transfer.run(kind, 7, 12, [this](int percent) { percents.append(percent); });
    }

    static TagDefinition temperatureOf(int station) {
        TagDefinition tag;
        tag.address = *parseProjectAddress(QStringLiteral("NA10"));
        tag.type = *tagTypeByName(QStringLiteral("dword"));
        tag.station = station;
        return tag;
    }

    TransferLink link;
    TransferDriver& driver = link.driver;
    QVector<int> percents;
};

} // namespace

TEST_F(RecipeTransferTest, PullsAsThePanelsPagesDo) {
    driver.now[TransferDriver::Pull].failed = true; // left by an earlier one
    driver.script[TransferDriver::Pull] = {{true, 0}, {true, 50}, {true, 50}, {true, 100}};
    const TransferEnd end = run(TransferKind::Pull);
    EXPECT_TRUE(end.completed && !end.failed && end.error.isEmpty());
    EXPECT_EQ(driver.written,
              QStringList({"PROG_ID0=7", "PROG_COUNT0=12", "ERROR1=0", "ENABLE1=1"}));
    EXPECT_EQ(percents, QVector<int>({0, 50, 100}));
}

TEST_F(RecipeTransferTest, PushesWithTheOtherSetOfTags) {
    driver.script[TransferDriver::Push] = {{true, 0}, {true, 100}};
    EXPECT_TRUE(run(TransferKind::Push).completed);
    EXPECT_EQ(driver.written.mid(2), QStringList({"ERROR0=0", "ENABLE0=1"}));
}

TEST_F(RecipeTransferTest, AsksForATemplateWithANegativeNumber) {
    driver.script[TransferDriver::Pull] = {{true, 100}};
    EXPECT_TRUE(run(TransferKind::Template).completed);
    EXPECT_EQ(driver.written.first(), QStringLiteral("PROG_ID0=-1"));
}

TEST_F(RecipeTransferTest, WaitsUntilTheEndOfAnEarlierOneIsNoLongerShown) {
    driver.now[TransferDriver::Pull] = {true, 100};
    driver.coming[TransferDriver::Pull] = {{true, 100}, {false, 100}, {false, 0}};
    driver.script[TransferDriver::Pull] = {{true, 0}, {true, 100}};
    EXPECT_TRUE(run(TransferKind::Pull).completed);
    EXPECT_EQ(percents, QVector<int>({0, 100}));
    EXPECT_TRUE(driver.coming[TransferDriver::Pull].isEmpty());
}

TEST_F(RecipeTransferTest, EndsWithTheDriversErrorFlag) {
    driver.script[TransferDriver::Push] = {{true, 0}, {true, 0, true}};
    const TransferEnd end = run(TransferKind::Push);
    EXPECT_TRUE(end.failed);
    EXPECT_FALSE(end.completed);
}

TEST_F(RecipeTransferTest, EndsWhenTheDriverStopsWithoutAWord) {
    driver.script[TransferDriver::Pull] = {{true, 0}, {false, 0}};
    const TransferEnd end = run(TransferKind::Pull);
    EXPECT_FALSE(end.completed || end.failed);
    EXPECT_EQ(end.error, QString());
}

TEST_F(RecipeTransferTest, DoesNotWaitForeverForADriverThatNeverBegins) {
    const qint64 start = link.clock.msecsSinceBoot();
    const TransferEnd end = run(TransferKind::Pull);
    EXPECT_FALSE(end.completed || end.failed);
    EXPECT_LT(link.clock.msecsSinceBoot() - start, 10000);
}

TEST_F(RecipeTransferTest, GivesUpOnADriverThatMakesNoProgress) {
    driver.script[TransferDriver::Pull] = {{true, 25}};
    const qint64 start = link.clock.msecsSinceBoot();
    EXPECT_EQ(run(TransferKind::Pull).error,
              QStringLiteral("the driver has made no progress for 60 s"));
    EXPECT_LT(link.clock.msecsSinceBoot() - start, 130000);
}

TEST_F(RecipeTransferTest, GivesUpAPushToAStationThatIsSilent) {
    driver.script[TransferDriver::Push] = {{true, 0}, {true, 3}};
    driver.on_look = [this] { // the polling thread's share
        link.session->port().control(HostPort::DiscardReceived, QVariant(0));
        link.session->port().writeBytes("lost", 4);
    };
    const qint64 start = link.clock.msecsSinceBoot();
    EXPECT_EQ(run(TransferKind::Push).error, QStringLiteral("the controller does not answer"));
    EXPECT_GT(link.clock.msecsSinceBoot() - start, TransferLink::TimeoutMsecs);
    EXPECT_LT(link.clock.msecsSinceBoot() - start, 2 * TransferLink::TimeoutMsecs);
}

TEST_F(RecipeTransferTest, GivesUpAPushWhosePortWithholdsWhatIsWritten) {
    driver.script[TransferDriver::Push] = {{true, 0}, {true, 3}, {true, 100}};
    const QByteArray request = cplFrame("0100XRN00LL00001000");
    driver.on_look = [&] { // the polling thread's share: it fails fast
        char buffer[16];
        for (int i = 0; i < 4; ++i) {
            link.session->port().control(HostPort::DiscardReceived, QVariant(0));
            link.session->port().writeBytes(request.constData(), request.size());
            link.session->port().readBytes(buffer, sizeof buffer);
        }
    };
    EXPECT_EQ(run(TransferKind::Push).error, QStringLiteral("the controller does not answer"));
}

TEST_F(RecipeTransferTest, EndsAtOnceWhenItIsCancelled) {
    driver.script[TransferDriver::Pull] = {{true, 25}};
    driver.on_look = [this] {
        if (driver.now[TransferDriver::Pull].percent == 25)
            link.session->cancel();
    };
    const qint64 start = link.clock.msecsSinceBoot();
    EXPECT_EQ(run(TransferKind::Pull).error, QStringLiteral("interrupted"));
    EXPECT_LT(link.clock.msecsSinceBoot() - start, 1000);
}

// The driver asks the port for the station again before each program.
TEST_F(RecipeTransferTest, HoldsThePortsStationStillThoughOthersArePolled) {
    link.session->poll({temperatureOf(1), temperatureOf(3)});
    QSet<int> stations;
    bool has_started = false;
    const auto look = [&] {
        if (has_started)
            stations.insert(link.session->port().stationId());
    };
    driver.on_start = [&](TransferDriver::Kind) {
        has_started = true;
        look();
    };
    driver.on_look = driver.on_tick = look;
    for (const auto kind : {TransferKind::Pull, TransferKind::Push}) {
        link.session->read(temperatureOf(1));
        stations.clear();
        has_started = false;
        for (auto& script : driver.script)
            script = {{true, 0}, {true, 50}, {true, 100}};
        RecipeTransfer transfer(*link.session, 2, link.clock);
        EXPECT_TRUE(transfer.run(kind, 7, 12, [](int) {}).completed);
        EXPECT_EQ(stations, QSet<int>({2}));
    }
}
