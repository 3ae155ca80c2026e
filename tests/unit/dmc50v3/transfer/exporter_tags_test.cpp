#include "tests/unit/dmc50v3/transfer/transferfixture.h"

#include <QThread>

namespace {

class ExporterTags : public TransferFixture {
protected:
    void writeBytes(const char* address, const QByteArray& data) {
        m_exporter->processWriteCommand(
            CommunicatorCommand(QLatin1String(address), CommunicatorCommand::Block, data.size()),
            data);
    }

    QByteArray readBytes(const char* address, int size) {
        QByteArray data(size, '\0');
        m_exporter->processReadCommand(
            CommunicatorCommand(QLatin1String(address), CommunicatorCommand::Block, size), data);
        return data;
    }

    /** Leaves the exporter with both error flags set. */
    void setErrors() {
        m_environment.pullStick();
        m_exporter->outputErrorLog(QStringList(), 0);
        m_exporter->outputErrorLog(QStringList(), 1);
    }
};

} // namespace

TEST_F(ExporterTags, EverythingIsZeroAtFirst) {
    const char* const tags[] = {"VVT_ENABLE0",   "VVT_ENABLE1",  "VVT_ERROR0",
                                "VVT_ERROR1",    "VVT_PROG_ID0", "VVT_PROG_COUNT0",
                                "VVT_PROGRESS0", "VVT_PROGRESS1"};
    for (const char* tag : tags)
        EXPECT_EQ(readTag(tag), 0) << tag;
}

TEST_F(ExporterTags, ProgramIdIsSignExtendedFromOneAndTwoBytesOnly) {
    writeBytes("VVT_PROG_ID0", QByteArray("\xFF", 1));
    EXPECT_EQ(m_exporter->progID(), -1);
    writeBytes("VVT_PROG_ID0", QByteArray("\x07", 1));
    writeBytes("VVT_PROG_ID0", QByteArray("\xFF\xFF", 2));
    EXPECT_EQ(m_exporter->progID(), -1);
    writeBytes("VVT_PROG_ID0", QByteArray("\xFF\xFF\xFF", 3));
    EXPECT_EQ(m_exporter->progID(), 16777215);
}

TEST_F(ExporterTags, ProgramCountAboveThirtyTwoOrBelowZeroIsIgnored) {
    writeTag("VVT_PROG_COUNT0", 32);
    EXPECT_EQ(readTag("VVT_PROG_COUNT0"), 32);
    writeTag("VVT_PROG_COUNT0", 33);
    EXPECT_EQ(readTag("VVT_PROG_COUNT0"), 32);
    writeTag("VVT_PROG_COUNT0", -1);
    EXPECT_EQ(readTag("VVT_PROG_COUNT0"), 32);
    m_exporter->setProgCount(0);
    EXPECT_EQ(readTag("VVT_PROG_COUNT0"), 0);
}

TEST_F(ExporterTags, NumbersAreCopiedOutInTheTagsSize) {
    m_exporter->setProgID(-2);
    EXPECT_EQ(readBytes("VVT_PROG_ID0", 1), QByteArray("\xFE", 1));
    EXPECT_EQ(readBytes("VVT_PROG_ID0", 2), QByteArray("\xFE\xFF", 2));
    EXPECT_EQ(readBytes("VVT_PROG_ID0", 4), QByteArray("\xFE\xFF\xFF\xFF", 4));
}

TEST_F(ExporterTags, ErrorFlagsAreClearedByZeroOnly) {
    setErrors();
    writeBytes("VVT_ERROR0", QByteArray("\x01", 1));
    writeBytes("VVT_ERROR1", QByteArray("\x01", 1));
    EXPECT_EQ(readTag("VVT_ERROR0"), 1);
    EXPECT_EQ(readTag("VVT_ERROR1"), 1);
    writeBytes("VVT_ERROR0", QByteArray("\x00", 1));
    EXPECT_EQ(readTag("VVT_ERROR0"), 0);
    EXPECT_EQ(readTag("VVT_ERROR1"), 1);
    writeBytes("VVT_ERROR1", QByteArray("\x00", 1));
    EXPECT_EQ(readTag("VVT_ERROR1"), 0);
}

TEST_F(ExporterTags, EnableWrittenWithZeroChangesNothing) {
    writeTag("VVT_ENABLE0", 0);
    writeTag("VVT_ENABLE1", 0);
    waitForWorker();
    EXPECT_EQ(readTag("VVT_ENABLE0"), 0);
    EXPECT_EQ(readTag("VVT_ENABLE1"), 0);
    EXPECT_EQ(readTag("VVT_ERROR0"), 0); // a write would have missed its file
    EXPECT_TRUE(m_notices.notices().isEmpty());
    EXPECT_FALSE(m_stick.contains(file(0)));
}

TEST_F(ExporterTags, EnableIsAnyNumberButZero) {
    choose(7, 0);
    writeBytes("VVT_ENABLE1", QByteArray("\x80", 1));
    writeBytes("VVT_ENABLE0", QByteArray("\x02", 1));
    waitForWorker();
    EXPECT_TRUE(m_stick.contains(file(7)));
    EXPECT_TRUE(m_stick.contains(QLatin1String("WRITE_PROG_7_ERROR.txt"))); // without programs
}

TEST_F(ExporterTags, WritingProgressHasNoEffect) {
    writeTag("VVT_PROGRESS0", 50);
    writeTag("VVT_PROGRESS1", 50);
    EXPECT_EQ(readTag("VVT_PROGRESS0"), 0);
    EXPECT_EQ(readTag("VVT_PROGRESS1"), 0);
}

TEST_F(ExporterTags, NamesAreFoundAnywhereInTheAddressButInCapitalsOnly) {
    writeTag("VVT_VVT_PROG_ID0_OF_OVEN", 9);
    EXPECT_EQ(readTag("vvt_VVT_PROG_ID0"), 9);
    writeTag("vvt_prog_id0", 4);
    EXPECT_EQ(readTag("VVT_PROG_ID0"), 9);
    EXPECT_EQ(readTag("VVT_prog_id0"), 0);
}

TEST_F(ExporterTags, AWriteThatFailsItsConditionGoesOnToTheNextName) {
    setErrors();
    writeBytes("VVT_ENABLE0_VVT_ERROR0", QByteArray("\x00", 1));
    EXPECT_EQ(readTag("VVT_ERROR0"), 0);
}

TEST_F(ExporterTags, UnknownNamesAreAcceptedAndDoNothing) {
    writeTag("VVT_ENABLE2", 1);
    EXPECT_EQ(readTag("VVT_ENABLE2"), 0);
    waitForWorker();
    EXPECT_EQ(readTag("VVT_ENABLE0") + readTag("VVT_ENABLE1"), 0);
}

TEST_F(ExporterTags, AWriteWithoutDataDoesNothing) {
    setErrors();
    writeBytes("VVT_ERROR0", QByteArray());
    writeBytes("VVT_ENABLE0", QByteArray());
    EXPECT_EQ(readTag("VVT_ERROR0"), 1);
}

TEST_F(ExporterTags, ANumberWrittenWithoutDataIsZero) {
    choose(7, 3);
    writeBytes("VVT_PROG_ID0", QByteArray());
    EXPECT_EQ(m_exporter->progID(), 0);
    EXPECT_EQ(m_exporter->progCount(), 3);
    writeBytes("VVT_PROG_COUNT0", QByteArray());
    EXPECT_EQ(m_exporter->progCount(), 0);
}

TEST_F(ExporterTags, ACountIsTakenFromAsFewBytesAsComeAndFromFourAtMost) {
    writeBytes("VVT_PROG_COUNT0", QByteArray("\x05", 1));
    EXPECT_EQ(m_exporter->progCount(), 5);
    writeBytes("VVT_PROG_COUNT0", QByteArray("\x06\x00", 2));
    EXPECT_EQ(m_exporter->progCount(), 6);
    writeBytes("VVT_PROG_COUNT0", QByteArray("\x07\x00\x00", 3));
    EXPECT_EQ(m_exporter->progCount(), 7);
    writeBytes("VVT_PROG_COUNT0", QByteArray("\x08\x00\x00\x00\x01", 5));
    EXPECT_EQ(m_exporter->progCount(), 8);
    writeBytes("VVT_PROG_COUNT0", QByteArray("\xFF", 1)); // -1
    EXPECT_EQ(m_exporter->progCount(), 8);
}

TEST_F(ExporterTags, EveryTagShowsItsOwnMember) {
    setErrors();
    m_exporter->resetWritingToDMC50Error();
    choose(9, 4);
    EXPECT_EQ(readTag("VVT_ERROR0"), 0);
    EXPECT_EQ(readTag("VVT_ERROR1"), 1);
    EXPECT_EQ(readTag("VVT_PROG_ID0"), 9);
    EXPECT_EQ(readTag("VVT_PROG_COUNT0"), 4);
}

TEST_F(ExporterTags, AnAddressOfTwoNamesIsTheFirstOfThemInTheListsOrder) {
    setErrors();
    choose(9, 4);
    EXPECT_EQ(readTag("VVT_PROG_COUNT0_VVT_PROG_ID0"), 9);
    EXPECT_EQ(readTag("VVT_PROG_ID0_VVT_ERROR1"), 1);
    EXPECT_EQ(readTag("VVT_ERROR1_VVT_ENABLE1"), 0);
    writeTag("VVT_PROG_COUNT0_VVT_PROG_ID0", 11);
    EXPECT_EQ(m_exporter->progID(), 11);
    EXPECT_EQ(m_exporter->progCount(), 4);
}

TEST_F(ExporterTags, TheWorkerInheritsThePriorityOfTheThreadThatStartsIt) {
    choose(0, 0);
    ASSERT_TRUE(m_exporter->thread()->isRunning());
    EXPECT_EQ(m_exporter->thread()->priority(), QThread::InheritPriority);
}

TEST_F(ExporterTags, ATagAddressIsKeptOnce) {
    m_exporter->setRcpDataCommandAddrList(QStringList(QLatin1String("NA1000")));
    m_exporter->setRcpDataCommandAddrList(QStringList(QLatin1String("NA1020")));
    m_exporter->initReadWriteCommandList();
    EXPECT_EQ(m_exporter->unregisteredAddrList().size(), 30);
    EXPECT_EQ(m_exporter->unregisteredAddrList().first(), QLatin1String("NA1040"));
}

TEST_F(ExporterTags, TheThirtyTwoSlotsAreListedOnlyOnce) {
    m_exporter->initReadWriteCommandList();
    m_exporter->setRcpDataCommandAddrList(QStringList(QLatin1String("NA1000")));
    m_exporter->initReadWriteCommandList();
    const QList<CommunicatorCommand>& commands = m_exporter->readWriteCommandList();
    ASSERT_EQ(commands.size(), 32);
    EXPECT_EQ(commands.first().stringKey(), QLatin1String("NA1000_3_24"));
    EXPECT_EQ(commands.at(1).address(), QLatin1String("NA1020"));
    EXPECT_EQ(commands.last().address(), QLatin1String("NA13e0"));
    EXPECT_EQ(m_exporter->unregisteredAddrList().size(), 32);
}

TEST_F(ExporterTags, SlotsAreRegisteredInListedOrInUpperCase) {
    m_exporter->setRcpDataCommandAddrList(QStringList()
                                          << QLatin1String("NA1000") << QLatin1String("NA10E0")
                                          << QLatin1String("NA10c0") << QLatin1String("na1020")
                                          << QLatin1String("2-NA1040"));
    m_exporter->initReadWriteCommandList();
    const QStringList unregistered = m_exporter->unregisteredAddrList();
    EXPECT_EQ(unregistered.size(), 29);
    EXPECT_FALSE(unregistered.contains(QLatin1String("NA1000")));
    EXPECT_FALSE(unregistered.contains(QLatin1String("NA10e0")));
    EXPECT_FALSE(unregistered.contains(QLatin1String("NA10c0")));
    EXPECT_TRUE(unregistered.contains(QLatin1String("NA1020"))); // a lower-case prefix
    EXPECT_TRUE(unregistered.contains(QLatin1String("NA1040"))); // another station's
}
