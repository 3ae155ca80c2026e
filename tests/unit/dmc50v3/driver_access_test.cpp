#include "tests/unit/dmc50v3/driverfixture.h"

#include <functional>

namespace {

class DriverRead : public DriverFixture {};
class DriverWrite : public DriverFixture {};

/** Counts what the driver asks of it, and may do something when it is asked. */
class AskedPort : public ScriptedPort {
public:
    explicit AskedPort(Clock* clock) : ScriptedPort(clock) {}

    const DeviceSetting* deviceSetting() override {
        ++m_settings_asked;
        return ScriptedPort::deviceSetting();
    }
    int stationId() override {
        if (m_when_station_asked)
            m_when_station_asked();
        return ScriptedPort::stationId();
    }

    int m_settings_asked = 0;
    std::function<void()> m_when_station_asked;
};

/** Takes only the addresses of @p requests: the first of each. */
QList<quint32> firstAddresses(const QList<QByteArray>& requests) {
    QList<quint32> addresses;
    for (int i = 0; i < requests.size(); ++i)
        addresses.append(requestItems(requests.at(i)).value(0));
    return addresses;
}

QByteArray refusal(const QByteArray&) {
    return cplFrame("0100X4A");
}

QByteArray bytes(const char* hex) {
    return QByteArray::fromHex(hex);
}

QString text(const char* latin1) {
    return QString::fromLatin1(latin1);
}

} // namespace

TEST_F(DriverRead, AWordIsTheLowHalfOfTheDoubleWord) {
    project("PA0011000");
    m_controller.setValue(1, 0x101000, 0x12345678);
    EXPECT_EQ(read("PA0011000", Word, 1), bytes("7856"));
    EXPECT_EQ(read("PA0011000", DoubleWord, 1), bytes("78563412"));
    EXPECT_EQ(read("PA0011000", Byte, 3), bytes("785634"));
    EXPECT_EQ(read("PA0011000", CommunicatorCommand::Block, 1), bytes("78"));
}

TEST_F(DriverRead, DoubleWordsThatTheProjectDoesNotUseStayZero) {
    project("NA11");
    m_controller.setValue(1, 0x10, 1);
    m_controller.setValue(1, 0x11, 0xAABBCCDD);
    m_controller.setValue(1, 0x12, 1);
    EXPECT_EQ(read("NA10", DoubleWord, 3), bytes("00000000DDCCBBAA00000000"));
    ASSERT_EQ(m_port.requests().size(), 1);
    EXPECT_EQ(requestItems(m_port.requests().at(0)), QList<quint32>() << 0x11);
}

TEST_F(DriverRead, ABitBeyondTheDoubleWordIsInTheNextOne) {
    project("PA0011000 PA0011001");
    m_controller.setValue(1, 0x101001, 2); // bit 33
    EXPECT_EQ(read("PA0011000.33", Bit, 1), bytes("01"));
    EXPECT_EQ(requestItems(m_port.requests().at(0)), QList<quint32>() << 0x101000 << 0x101001);
    EXPECT_EQ(read("PA0011000.32", Bit, 1), bytes("00"));
}

TEST_F(DriverRead, BitsAreShiftedFittedAndCleared) {
    project("NA10");
    m_controller.setValue(1, 0x10, 0xFFFFFFF0);
    EXPECT_EQ(read("NA10.4", Bit, 3), bytes("07"));
    EXPECT_EQ(read("NA10.2", Bit, 10), bytes("FC03"));
    EXPECT_EQ(read("NA10.2", CommunicatorCommand::BitBlock, 10), bytes("FC03"));
}

TEST_F(DriverRead, QuadWordsAndUnknownTypesAreNotSupported) {
    project("NA10");
    EXPECT_TRUE(read("NA10", CommunicatorCommand::QuadWord, 1).isEmpty());
    EXPECT_TRUE(read("NA10", 7, 1).isEmpty());
    EXPECT_TRUE(m_port.requests().isEmpty());
}

TEST_F(DriverRead, TheSpecialTagsReadAsZeros) {
    project("NA10");
    EXPECT_EQ(read("INITDRV0", Word, 1), bytes("0000"));
    EXPECT_EQ(read("lowlatency", Byte, 1), bytes("00"));
    EXPECT_EQ(read("Write_Que_Size0", DoubleWord, 1), bytes("00000000"));
}

TEST_F(DriverRead, TheStationIsThePorts) {
    project("NA10 2-NA10");
    m_controller.setValue(1, 0x10, 11);
    m_controller.setValue(2, 0x10, 22);
    EXPECT_EQ(read("NA10", Byte, 1), bytes("0B"));
    m_port.m_station = 0x102; // the low 8 bits count
    EXPECT_EQ(read("NA10", Byte, 1), bytes("16"));
}

TEST_F(DriverRead, PolledAddressesComeFromTheCache) {
    project("NA10 NA11");
    QList<CommunicatorCommand> session;
    session.append(CommunicatorCommand(text("NA10"), DoubleWord, 1));
    m_driver->setSessionCommand(session); // kept until the thread is there
    m_controller.setValue(1, 0x10, 5);
    EXPECT_EQ(read("NA10", Byte, 1), bytes("05"));
    pause(1000);
    m_controller.setValue(1, 0x11, 6);
    EXPECT_EQ(read("NA11", Byte, 1), bytes("06"));
    const QList<QByteArray> requests = m_port.requests();
    int polls = 0, once = 0;
    for (int i = 0; i < requests.size(); ++i) {
        polls += requestItems(requests.at(i)) == QList<quint32>() << 0x10;
        once += requestItems(requests.at(i)) == QList<quint32>() << 0x11;
    }
    EXPECT_GT(polls, 20);
    EXPECT_EQ(once, 1);
}

TEST_F(DriverRead, ASilentControllerGivesNothingAndItsErrorText) {
    project("NA10");
    QList<CommunicatorCommand> session;
    session.append(CommunicatorCommand(text("NA10"), DoubleWord, 1));
    m_driver->setSessionCommand(session); // without one, an idle pause clears the error
    staySilent();
    EXPECT_TRUE(read("NA10", Word, 1).isEmpty());
    pause(100);
    EXPECT_TRUE(m_driver->hasError());
    EXPECT_EQ(m_driver->getLastError(),
              text("read station id#1 start address 00000010:DMC50 no response"));
    answer();
    pause(4000);
    EXPECT_EQ(read("NA10", Word, 1), bytes("0000"));
    EXPECT_FALSE(m_driver->hasError());
}

TEST_F(DriverRead, ALateReplyIsNotTakenForTheNextOne) {
    project("NA10 NA11");
    QByteArray late;
    int requests = 0;
    m_port.setAnswer([&](const QByteArray& request) {
        if (++requests > 1)
            return m_controller.answer(request);
        late = m_controller.answer(request);
        return QByteArray();
    });
    m_controller.setValue(1, 0x10, 10);
    m_controller.setValue(1, 0x11, 11);
    EXPECT_TRUE(read("NA10", Byte, 1).isEmpty());
    pause(100);
    m_port.receive(late);
    EXPECT_EQ(read("NA11", Byte, 1), bytes("0B"));
}

TEST_F(DriverRead, OrdinaryReadsFailWhileProgramsAreRead) {
    project("NA10");
    m_driver->setProgramReading(true);
    EXPECT_TRUE(read("NA10", Word, 1).isEmpty());
    EXPECT_EQ(read("WRITE_QUE_SIZE0", Word, 1), bytes("0000"));
    EXPECT_EQ(m_driver->readDWords(1, 0x10, 1), bytes("00000000"));
    m_driver->setProgramReading(false);
    EXPECT_EQ(read("NA10", Word, 1), bytes("0000"));
}

TEST_F(DriverRead, WithoutADatabaseNothingIsReadOrWritten) {
    m_driver.reset(new DriverDMC50v3(m_clock));
    m_probe.reset(new DriverProbe(*m_driver));
    EXPECT_TRUE(read("NA10", Word, 1).isEmpty());
    EXPECT_EQ(m_driver->getLastError(), text("can not open database"));
    EXPECT_FALSE(write("NA10", Word, 1, bytes("0100")));
    EXPECT_EQ(m_probe->thread(), nullptr);
}

TEST_F(DriverRead, WithoutItsLinkEveryAccessFailsUntilTheDatabaseIsMended) {
    m_project.createDatabase();
    m_driver.reset(new DriverDMC50v3(m_clock));
    m_probe.reset(new DriverProbe(*m_driver));
    for (int attempt = 0; attempt < 3; ++attempt) {
        m_driver->clearError();
        EXPECT_TRUE(read("NA10", Word, 1).isEmpty());
        EXPECT_TRUE(m_driver->hasError());
        m_driver->clearError();
        EXPECT_FALSE(write("NA10", Word, 1, bytes("0100")));
        EXPECT_TRUE(m_driver->hasError());
        EXPECT_EQ(m_driver->getLastError(), text("failed to get default station id"));
    }
    m_project.addLink(1, 1001);
    m_project.addNode(1, 1, true);
    m_project.addTags(1, QStringList(text("NA10")));
    m_controller.setValue(1, 0x10, 5);
    EXPECT_EQ(read("NA10", Word, 1), bytes("0500"));
}

TEST_F(DriverRead, TheHostsPortIsAskedForItsSettingsUntilTheDatabaseIsLoaded) {
    m_driver.reset(new DriverDMC50v3(m_clock));
    AskedPort port(&m_clock);
    const CommunicatorCommand command(text("WRITE_QUE_SIZE0"), Word, 1);
    m_driver->read(&port, command);
    m_driver->write(&port, command, bytes("0000"));
    EXPECT_EQ(port.m_settings_asked, 2); // there is no database yet
    m_project.create(1, QStringList(text("NA10")));
    EXPECT_EQ(m_driver->read(&port, command), bytes("0000"));
    EXPECT_TRUE(m_driver->write(&port, command, bytes("0000")));
    EXPECT_EQ(port.m_settings_asked, 3);
    deleteDriver(); // before its port
}

TEST_F(DriverRead, ClearsTheDriversOwnError) {
    project("NA10");
    m_driver->setCommError(text("of an earlier access"));
    EXPECT_EQ(read("NA10", Word, 1), bytes("0000"));
    EXPECT_FALSE(m_driver->hasError());
}

TEST_F(DriverRead, OnlyTheWholeWordIsTheLowLatencyTag) {
    project("NA10");
    EXPECT_DEATH(read("LOWLATENC", Word, 1), "ASSERT: \"0\"");
}

TEST_F(DriverRead, ASessionsAddressesAreThoseOfTheDefaultStation) {
    m_project.create(5, QStringList(text("NA10")));
    m_driver.reset(new DriverDMC50v3(m_clock));
    m_probe.reset(new DriverProbe(*m_driver));
    QList<CommunicatorCommand> session;
    session.append(CommunicatorCommand(text("NA10"), DoubleWord, 1));
    m_driver->setSessionCommand(session);
    read("INITDRV0", Word, 1);
    pause(100);
    ASSERT_FALSE(m_port.requests().isEmpty());
    EXPECT_EQ(requestStation(m_port.requests().at(0)), 5);
}

TEST_F(DriverRead, AnEmptySessionDoesNotEndThePolling) {
    project("NA10 NA11");
    read("INITDRV0", Word, 1); // makes the thread
    QList<CommunicatorCommand> session;
    session.append(CommunicatorCommand(text("NA10"), DoubleWord, 1));
    m_driver->setSessionCommand(session);
    m_driver->setSessionCommand(QList<CommunicatorCommand>());
    pause(100);
    EXPECT_TRUE(firstAddresses(m_port.requests()).contains(0x10));
    session[0] = CommunicatorCommand(text("NA11"), DoubleWord, 1);
    m_driver->setSessionCommand(session);
    pause(100);
    EXPECT_EQ(firstAddresses(m_port.requests()).last(), 0x11u);
}

TEST_F(DriverRead, ClearingTheSessionReachesTheThread) {
    project("NA10");
    read("INITDRV0", Word, 1); // makes the thread
    m_driver->clearSessionCommand();
    EXPECT_EQ(m_probe->thread()->getFlag(), PollingThread::ClearedSession);
}

TEST_F(DriverRead, ARangeOutsideTheProjectEndsTheProgram) {
    project("NA10");
    m_probe->validAddresses()[1] = {0x10};
    EXPECT_DEATH(m_driver->readDWords(9, 0x10, 1), "\"it != m_valid_addresses_map.end\\(\\)\"");
    EXPECT_DEATH(m_driver->readDWords(1, 0x11, 1), "\"rc > 0\"");
    EXPECT_DEATH(m_driver->readDWords(1, 0x10, 0), "\"rc > 0\"");
    EXPECT_DEATH(m_driver->readDWords(1, 0x10, 1), "\"m_thread.get\\(\\)\"");
}

TEST_F(DriverRead, ExactlyTwoHundredAndFiftySixDoubleWordsEndTheProgram) {
    project("NA10");
    m_probe->validAddresses()[1] = {0x10};
    EXPECT_DEATH(m_driver->readDWords(1, 0x10, 256), "\"rc > 0\"");
}

TEST_F(DriverRead, ANegativeCountAsksForNothingAndEndsTheProgram) {
    project("NA10");
    EXPECT_DEATH(read("NA10", Word, -100), "\"rc > 0\"");
    EXPECT_DEATH(read("NA10.0", Bit, -100), "\"rc > 0\"");
}

TEST_F(DriverRead, ASilentControllerGivesNoBits) {
    project("NA10");
    staySilent();
    EXPECT_TRUE(read("NA10.1", Bit, 1).isEmpty());
}

TEST_F(DriverRead, TheFirstAccessMakesTheThreadAndGivesItWhatWasKept) {
    project("NA10 LOWLATENCY");
    QList<CommunicatorCommand> session;
    session.append(CommunicatorCommand(text("NA10"), DoubleWord, 1));
    m_driver->setSessionCommand(session);
    read("INITDRV0", Word, 1);
    const PollingThread* const thread = m_probe->thread();
    ASSERT_NE(thread, nullptr);
    EXPECT_TRUE(m_probe->keptSession().isEmpty());
    EXPECT_TRUE(m_probe->lowLatencyStations().empty());
    read("INITDRV0", Word, 1);
    EXPECT_EQ(m_probe->thread(), thread);
}

TEST_F(DriverRead, OneMoreLooksAtTheFirstAddressOnly) {
    project("NA10 NA11");
    m_controller.setValue(1, 0x10, 1);
    m_controller.setValue(1, 0x11, 2);
    ASSERT_EQ(read("NA10", Byte, 1), bytes("01")); // makes the thread
    const QByteArray data = m_driver->readDWords(1, 0x10, 257);
    ASSERT_EQ(data.size(), 4 * 257);
    EXPECT_EQ(data.left(8), bytes("0100000000000000"));
}

TEST_F(DriverWrite, AWordReplacesTheWholeDoubleWord) {
    project("NA10");
    m_controller.setValue(1, 0x10, 0xFFFFFFFF);
    EXPECT_TRUE(write("NA10", Word, 1, bytes("3412")));
    pause(100);
    EXPECT_EQ(m_controller.value(1, 0x10), 0x1234u);
}

TEST_F(DriverWrite, ShortDataIsPaddedAndLongDataCut) {
    project("NA10 NA11");
    m_controller.setValue(1, 0x11, 9);
    EXPECT_TRUE(write("NA10", DoubleWord, 1, bytes("78")));
    pause(100);
    EXPECT_EQ(m_controller.value(1, 0x10), 0x78u);
    EXPECT_TRUE(write("NA10", DoubleWord, 1, bytes("0100000002000000")));
    pause(100);
    EXPECT_EQ(m_controller.value(1, 0x10), 1u);
    EXPECT_EQ(m_controller.value(1, 0x11), 9u);
}

TEST_F(DriverWrite, BitsMergeWithTheCurrentValue) {
    project("NA10 NA11");
    m_controller.setValue(1, 0x10, 0x80000001);
    m_controller.setValue(1, 0x11, 0x10);
    EXPECT_TRUE(write("NA10.30", Bit, 4, bytes("05"))); // bits 30 to 33 := 1 0 1 0
    pause(100);
    EXPECT_EQ(m_controller.value(1, 0x10), 0x40000001u);
    EXPECT_EQ(m_controller.value(1, 0x11), 0x11u);
}

TEST_F(DriverWrite, AnAddressOutsideTheProjectIsAcceptedAndNotSent) {
    project("NA10");
    EXPECT_TRUE(write("NA20", Word, 1, bytes("0100")));
    pause(100);
    EXPECT_TRUE(m_port.requests().isEmpty());
}

TEST_F(DriverWrite, TheSpecialTagsAreAcceptedAndNotSent) {
    project("NA10");
    for (const char* tag : {"INITDRV0", "write_que_size0", "LOWLATENCY"})
        EXPECT_TRUE(write(tag, Word, 1, bytes("0100"))) << tag;
    pause(100);
    EXPECT_TRUE(m_port.requests().isEmpty());
}

TEST_F(DriverWrite, WhileTheLineIsInErrorAWriteIsAcceptedAndDropped) {
    project("NA10");
    staySilent();
    EXPECT_TRUE(read("NA10", Word, 1).isEmpty());
    m_port.forgetCalls();
    m_probe->thread()->setCommError(text("down"));
    const qint64 before = m_clock.msecsSinceBoot();
    EXPECT_TRUE(write("NA10", Word, 1, bytes("0100")));
    EXPECT_TRUE(write("NA10.1", Bit, 1, bytes("01"))); // does not read first
    EXPECT_EQ(m_clock.msecsSinceBoot(), before);
    EXPECT_TRUE(m_probe->thread()->addrArgQueueMapIsEmpty());
    answer();
    pause(4000); // the error is over
    EXPECT_TRUE(m_port.requests().isEmpty());
}

TEST_F(DriverWrite, QuadWordsAndUnknownTypesAreNotSupported) {
    project("NA10");
    EXPECT_FALSE(write("NA10", CommunicatorCommand::QuadWord, 1, bytes("0100000000000000")));
    EXPECT_FALSE(write("NA10", 9, 1, bytes("01")));
}

TEST_F(DriverWrite, TheQueueSizeTagCountsThePairsOfThePortsStation) {
    project("NA10 NA11");
    staySilent();
    m_clock.setParticipants(3); // time stands still
    EXPECT_EQ(m_driver->read(&m_port, CommunicatorCommand(text("WRITE_QUE_SIZE0"), Word, 1)),
              bytes("0000"));
    m_clock.waitForSleepers(1); // the thread pauses, idle
    EXPECT_TRUE(write("NA10", DoubleWord, 2, bytes("0100000002000000")));
    EXPECT_EQ(read("WRITE_QUE_SIZE0", Word, 1), bytes("0200"));
    EXPECT_EQ(read("WRITE_QUE_SIZE0", Byte, 1), bytes("02"));
    EXPECT_EQ(read("WRITE_QUE_SIZE0", DoubleWord, 1), bytes("02000000"));
    m_port.m_station = 2;
    EXPECT_EQ(read("WRITE_QUE_SIZE0", Word, 1), bytes("0000"));
}

TEST_F(DriverWrite, ABitWriteThatCannotReadIsRetriedAsThePortSaysThenFails) {
    project("NA10");
    m_port.m_retries = 2;
    m_port.setAnswer([](const QByteArray&) { return cplFrame("0100X4A"); });
    const qint64 before = m_clock.msecsSinceBoot();
    EXPECT_FALSE(write("NA10.1", Bit, 1, bytes("01")));
    // Three attempts; each waits 3 x 3000 ms for a read that is tried three times.
    EXPECT_EQ(m_clock.msecsSinceBoot() - before, 3 * 9000);
    EXPECT_EQ(m_port.requests().size(), 3 * 3);
}

TEST_F(DriverWrite, TheRetriesOfAWriteAreASignedNumber) {
    project("NA10");
    m_port.setAnswer(refusal);
    read("INITDRV0", Word, 1); // makes the thread, whose requests are not retried
    const int requests_of[][2] = {{-1, 1}, {0, 1}, {1, 2}};
    for (const auto& row : requests_of) {
        m_port.m_retries = unsigned(row[0]);
        m_port.forgetCalls();
        EXPECT_FALSE(write("NA10.1", Bit, 1, bytes("01")));
        EXPECT_EQ(m_port.requests().size(), row[1]) << row[0];
        pause(100); // the thread is idle and clears its error
    }
}

TEST_F(DriverWrite, EachAttemptClearsTheDriversOwnError) {
    project("NA10");
    AskedPort port(&m_clock);
    port.m_retries = 1;
    port.setAnswer(refusal);
    int attempts = 0;
    port.m_when_station_asked = [&] {
        ++attempts;
        m_driver->setCommError(text("between two attempts"));
    };
    m_driver->setCommError(text("of an earlier access"));
    EXPECT_FALSE(m_driver->write(&port, CommunicatorCommand(text("NA10.1"), Bit, 1), bytes("01")));
    EXPECT_EQ(attempts, 2);
    deleteDriver(); // before its port
}

TEST_F(DriverWrite, TheSpecialTagsAreAcceptedWhileInError) {
    project("NA10");
    read("INITDRV0", Word, 1); // makes the thread
    for (const char* tag : {"INITDRV0", "WRITE_QUE_SIZE0", "LOWLATENCY"}) {
        m_driver->setCommError(text("own"));
        m_probe->thread()->setCommError(text("line"));
        EXPECT_TRUE(write(tag, Word, 1, bytes("0100"))) << tag;
        EXPECT_EQ(m_driver->hasError(), true) << tag;
    }
}

TEST_F(DriverWrite, ABitWriteIsNotRetriedOnALineThatIsInErrorByThen) {
    project("NA10");
    m_port.m_retries = 1;
    staySilent();
    const qint64 before = m_clock.msecsSinceBoot();
    EXPECT_FALSE(write("NA10.1", Bit, 1, bytes("01")));
    EXPECT_EQ(m_clock.msecsSinceBoot() - before, 2 * 3000);
    EXPECT_TRUE(m_driver->hasError());
}

TEST_F(DriverWrite, MalformedDataOrAnUnknownStationEndsTheProgram) {
    project("NA10");
    m_probe->validAddresses()[1] = {0x10};
    const char* const text = "\"dwords.size\\(\\) > 0 && dwords.size\\(\\)%4==0\"";
    EXPECT_DEATH(m_probe->writeDWords(1, 0x10, QByteArray()), text);
    EXPECT_DEATH(m_probe->writeDWords(1, 0x10, bytes("010203")), text);
    EXPECT_DEATH(m_probe->writeDWords(9, 0x10, bytes("01020304")),
                 "\"it != m_valid_addresses_map.end\\(\\)\"");
    EXPECT_DEATH(m_probe->writeDWords(1, 0x10, bytes("01020304")), "\"m_thread.get\\(\\)\"");
}

TEST_F(DriverWrite, LowLatencyStationsOfTheProjectAreSetUp) {
    project("NA10 LOWLATENCY");
    EXPECT_EQ(read("NA10", Byte, 1), bytes("00"));
    pause(100);
    EXPECT_EQ(m_controller.value(1, 0x2014), 200u);
}
