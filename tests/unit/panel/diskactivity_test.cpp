#include "runtime/panel/diskcounters.h"

#include "runtime/base/connectchecked.h"
#include "tests/unit/panel/armstoragefixture.h"

#include <random>

namespace {

QString latin1(const char* text) {
    return QString::fromLatin1(text);
}

/** Asks the monitor whenever it tells something. */
class Asker : public QObject {
    Q_OBJECT
public:
    explicit Asker(ArmLinuxHmi& hmi) : m_hmi(hmi) {}

    QString answer;

public slots:
    void ask() { answer = m_hmi.getMount(DEVICE_USB); }

private:
    ArmLinuxHmi& m_hmi;
};

class DiskActivity : public ArmStorageFixture {
protected:
    void mountNode(const QByteArray& node) {
        mount.setTable(node + " on /run/media/sdx type vfat (rw)\n");
        hmi.processDeviceMountStatus();
        told.take();
    }

    /** What one sample of these statistics makes the monitor tell. */
    QStringList sample(const QByteArray& statistics) {
        directory.write(latin1("diskstats"), statistics);
        hmi.processIOStatus();
        return told.take();
    }

    const QStringList up = QStringList(latin1("inIO 1 0 true"));
    const QStringList down = QStringList(latin1("inIO 1 0 false"));
    const QStringList nothing;
};

} // namespace

TEST_F(DiskActivity, GoesUpAtTheFirstChangedSampleAndDownAtTheFirstUnchanged) {
    mountNode("/dev/sda1");
    EXPECT_EQ(sample(storageRecording("diskstats_idle.txt")), up) << "the sum was not zero";
    EXPECT_EQ(sample(storageRecording("diskstats_idle.txt")), down);
    EXPECT_EQ(sample(storageRecording("diskstats_idle.txt")), nothing);
    EXPECT_EQ(sample(storageRecording("diskstats_reading.txt")), up);
    EXPECT_EQ(sample(storageRecording("diskstats_idle.txt")), nothing) << "still changing";
    EXPECT_EQ(sample(storageRecording("diskstats_idle.txt")), down);
}

TEST_F(DiskActivity, TellsNothingOfAFirstSumOfZero) {
    mountNode("/dev/sda1");
    EXPECT_EQ(sample("8 1 sda1 9 9 0 0 9 9 9\n"), nothing);
    EXPECT_EQ(sample("8 1 sda1 9 9 0 1 9 9 9\n"), up);
}

TEST_F(DiskActivity, OfAPartitionIsInFields6And7) {
    mountNode("/dev/sda1");
    sample("8 1 sda1 0 0 10 20 30\n");
    EXPECT_EQ(sample("8 1 sda1 0 0 10 20 31\n"), down) << "field 8";
    EXPECT_EQ(sample("8 1 sda1 0 0 10 21 31\n"), up) << "field 7";
    EXPECT_EQ(sample("8 1 sda1 1 1 10 21 31\n"), down) << "fields 4 and 5";
    EXPECT_EQ(sample("8 1 sda1 1 1 11 21 31\n"), up) << "field 6";
}

TEST_F(DiskActivity, OfAWholeDiskIsInFields6And8) {
    mountNode("/dev/sda");
    sample("8 0 sda 0 0 10 20 30\n");
    EXPECT_EQ(sample("8 0 sda 0 0 10 21 30\n"), down) << "field 7";
    EXPECT_EQ(sample("8 0 sda 0 0 10 21 31\n"), up) << "field 8";
    EXPECT_EQ(sample("8 0 sda 0 0 10 21 31\n"), down);
    EXPECT_EQ(sample("8 0 sda 0 0 11 21 31\n"), up) << "field 6";
}

TEST_F(DiskActivity, OfADeviceIsNotThatOfItsNeighbours) {
    mountNode("/dev/sda1");
    EXPECT_EQ(sample("8 0 sda 0 0 10 20 30\n8 2 sda2 0 0 10 20 30\n8 17 sda11 0 0 1 2 3\n"),
              nothing);
}

TEST_F(DiskActivity, IsToldWithTheTypeOfTheDevice) {
    mount.setTable("/dev/mmcblk1p1 on /run/media/mmcblk1p1 type vfat (rw)\n");
    hmi.processDeviceMountStatus();
    told.take();
    EXPECT_EQ(sample(storageRecording("diskstats_idle.txt")), QStringList(latin1("inIO 2 0 true")));
}

TEST_F(DiskActivity, IsUnknownWithoutStatistics) {
    mountNode("/dev/sda1");
    hmi.processIOStatus();
    EXPECT_EQ(told.take(), nothing);
}

TEST_F(DiskActivity, IgnoresALineWithoutBothCounters) {
    mountNode("/dev/sda1");
    EXPECT_EQ(sample("8 1 sda1 0 0 10"), nothing);
    EXPECT_EQ(sample("8 1 sda1 0 0 ten twenty\n"), nothing);
    EXPECT_EQ(sample("8 1 sda1"), nothing);
}

TEST_F(DiskActivity, ReadsLinesInPiecesOf128Bytes) {
    mountNode("/dev/sda1");
    const QByteArray long_line(128, '9');
    EXPECT_EQ(sample(long_line + "8 1 sda1 0 0 10 20\n"), up) << "the rest is a line of its own";
}

TEST_F(DiskActivity, CutsALongLineAfter128BytesWithTheFinalZero) {
    mountNode("/dev/sda1");
    EXPECT_EQ(sample("8 1 sda1 0 0 10 25\n"), up);
    const QByteArray record = "sda1 0 0 10 25";
    const QByteArray front = "8 1" + QByteArray(127 - 3 - record.size(), ' ');
    EXPECT_EQ(sample(front + record + "77 x y\n"), down) << "the same sum";
}

TEST_F(DiskActivity, OfTwoRecordsOfANodeIsToldForBoth) {
    mount.setTable("/dev/sda1 on /run/media/sdx type vfat (rw)\n"
                   "/dev/sda1 on /run/media/mmcblk1 type vfat (rw)\n");
    hmi.processDeviceMountStatus();
    told.take();
    EXPECT_EQ(sample("8 1 sda1 0 0 10 25\n"), up + QStringList(latin1("inIO 2 0 true")));
}

TEST_F(DiskActivity, IsToldWhileQuestionsAreAnswered) {
    mountNode("/dev/sda1");
    Asker asker(hmi);
    connectChecked(&hmi, SIGNAL(platDeviceInIO(int, int, bool)), &asker, SLOT(ask()));
    sample("8 1 sda1 0 0 10 25\n");
    EXPECT_EQ(asker.answer, latin1("/run/media/sdx")) << "no lock is held";
}

TEST_F(DiskActivity, WrapsAroundAt64Bits) {
    mountNode("/dev/sda1");
    EXPECT_EQ(sample("8 1 sda1 0 0 18446744073709551615 1\n"), nothing) << "the sum is zero";
}

TEST_F(DiskActivity, SurvivesRandomStatistics) {
    mountNode("/dev/sda1");
    std::mt19937 random(6);
    for (int round = 0; round < 50; ++round) {
        QByteArray statistics;
        for (int i = 0; i < 2000; ++i)
            statistics += random() % 10 ? QByteArray(1, char(random())) : QByteArray("8 1 sda1 ");
        sample(statistics);
    }
    EXPECT_EQ(hmi.getMount(DEVICE_USB), latin1("/run/media/sdx"));
}

TEST(DiskNodes, OfPartitionsHaveALetterOrADigitAndANumberUpToFour) {
    EXPECT_TRUE(isPartitionNode(latin1("/dev/sda1")));
    EXPECT_TRUE(isPartitionNode(latin1("/dev/sdz4")));
    EXPECT_TRUE(isPartitionNode(latin1("/dev/mmcblk0p1")));
    EXPECT_FALSE(isPartitionNode(latin1("/dev/sda")));
    EXPECT_FALSE(isPartitionNode(latin1("/dev/sda5")));
    EXPECT_FALSE(isPartitionNode(latin1("/dev/sda11")));
    EXPECT_FALSE(isPartitionNode(latin1("/dev/mmcblk1")));
    EXPECT_FALSE(isPartitionNode(latin1("x/dev/sda1")));
}

TEST(DiskNames, AreCutAfter12Characters) {
    EXPECT_EQ(diskName("253 0 abcdefghijklmnop 1 2 3"), QByteArray("abcdefghijkl"));
    EXPECT_EQ(diskName("253 0"), QByteArray());
    EXPECT_EQ(diskName(QByteArray()), QByteArray());
}

#include "diskactivity_test.moc"
