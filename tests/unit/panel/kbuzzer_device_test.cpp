#include "tests/unit/panel/buzzerfixture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

class BuzzerDevice : public BuzzerFixture {
protected:
    /** This process's descriptors of the device. */
    static QList<int> descriptors() {
        const QString device = QFileInfo(panelPaths().buzzer_device).canonicalFilePath();
        const QDir all(QString::fromLatin1("/proc/self/fd"));
        const QStringList numbers = all.entryList(QDir::Files | QDir::System);
        QList<int> found;
        for (int i = 0; i < numbers.size(); ++i) {
            if (QFile::symLinkTarget(all.filePath(numbers.at(i))) == device)
                found << numbers.at(i).toInt();
        }
        return found;
    }
};

} // namespace

TEST_F(BuzzerDevice, SilencesTheDeviceAtTheStartWithThePanelKernelsEvent) {
    KBuzzer buzzer(running_clock);
    EXPECT_EQ(deviceBytes(), QByteArray("\0\0\0\0\0\0\0\0\x12\0\x02\0\0\0\0\0", 16));
}

TEST_F(BuzzerDevice, StaysSilentWithoutADevice) {
    ASSERT_TRUE(QFile::remove(panelPaths().buzzer_device));
    SignalCounter done; // outlives the buzzer's thread
    KBuzzer buzzer(running_clock);
    done.follow(&buzzer, SIGNAL(allWorkDone()));
    buzzer.makeSound(100, 440);
    done.waitFor(1);
    EXPECT_FALSE(QFile::exists(panelPaths().buzzer_device));
}

TEST_F(BuzzerDevice, WritesEachEventInOnePieceToAFifo) {
    ASSERT_TRUE(QFile::remove(panelPaths().buzzer_device));
    const QByteArray fifo = panelPaths().buzzer_device.toLocal8Bit();
    ASSERT_EQ(mkfifo(fifo.constData(), 0600), 0);
    const int reader = open(fifo.constData(), O_RDWR);
    ASSERT_GE(reader, 0);
    KBuzzer buzzer(running_clock);
    buzzer.makeSound(100, 0x0201);
    const QByteArray head("\0\0\0\0\0\0\0\0\x12\0\x02\0", 12);
    for (const QByteArray& value : {QByteArray(4, '\0'), QByteArray("\x01\x02\0\0", 4)}) {
        QByteArray event(16, '\xEE');
        ASSERT_EQ(read(reader, event.data(), 16), 16);
        EXPECT_EQ(event, head + value);
    }
    close(reader);
}

TEST_F(BuzzerDevice, IsOpenOnceForReadingAndWritingWhileTheBuzzerLives) {
    {
        KBuzzer buzzer(running_clock);
        buzzer.makeSound(1, 440);
        waitForTones(3);
        ASSERT_EQ(descriptors().size(), 1);
        EXPECT_EQ(fcntl(descriptors().first(), F_GETFL) & O_ACCMODE, O_RDWR);
        EXPECT_EQ(fcntl(descriptors().first(), F_GETFD), FD_CLOEXEC);
    }
    EXPECT_TRUE(descriptors().isEmpty());
}
