#include "runtime/panel/framdevice.h"

#include "tests/support/temporarydirectory.h"

#include <QFile>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <thread>
#include <unistd.h>

namespace {

/** The kernel's calls on a file. */
class FramDeviceOnAFile : public ::testing::Test {
protected:
    FramDeviceOnAFile() { directory.write(QString::fromLatin1("fram"), "0123456789"); }

    int open(int flags) const {
        return device.open(QFile::encodeName(directory.filePath(QString::fromLatin1("fram"))),
                           flags);
    }

    TemporaryDirectory directory;
    FramDevice& device = FramDevice::system();
};

int bytesToRead(int fd) {
    int count = -1;
    EXPECT_EQ(ioctl(fd, FIONREAD, &count), 0);
    return count;
}

} // namespace

TEST_F(FramDeviceOnAFile, TransfersAtAnOffset) {
    const int fd = open(O_RDWR);
    ASSERT_GT(fd, 0);
    EXPECT_EQ(device.pwrite(fd, "ab", 2, 3), 2);
    char bytes[4] = {};
    EXPECT_EQ(device.pread(fd, bytes, 4, 2), 4);
    EXPECT_EQ(QByteArray(bytes, 4), QByteArray("2ab5"));
    EXPECT_EQ(device.close(fd), 0);
}

TEST_F(FramDeviceOnAFile, OpensInTheGivenModeAndNotForChildProcesses) {
    const int fd = open(O_RDONLY);
    ASSERT_GT(fd, 0);
    EXPECT_EQ(device.pwrite(fd, "ab", 2, 3), -1);
    EXPECT_EQ(fcntl(fd, F_GETFD), FD_CLOEXEC);
    EXPECT_EQ(device.close(fd), 0);
    EXPECT_EQ(fcntl(fd, F_GETFD), -1) << "closed";
}

TEST_F(FramDeviceOnAFile, FailsAsTheKernelDoes) {
    EXPECT_EQ(device.open("/nowhere/fram", O_RDONLY), -1);
    EXPECT_EQ(device.close(-1), -1);
}

TEST(FramDeviceOnATerminal, HandsRequestAndArgumentToTheDriver) {
    FramDevice& device = FramDevice::system();
    const int master = posix_openpt(O_RDWR | O_NOCTTY);
    ASSERT_GE(master, 0);
    ASSERT_EQ(grantpt(master) | unlockpt(master), 0);
    const int slave = device.open(ptsname(master), O_RDWR | O_NOCTTY);
    ASSERT_GT(slave, 0);
    ASSERT_EQ(write(master, "line\n", 5), 5);
    while (bytesToRead(slave) != 5)
        std::this_thread::yield();
    EXPECT_EQ(device.ioctl(slave, TCFLSH, TCOFLUSH), 0);
    EXPECT_EQ(bytesToRead(slave), 5);
    EXPECT_EQ(device.ioctl(slave, TCFLSH, TCIFLUSH), 0);
    EXPECT_EQ(bytesToRead(slave), 0);
    EXPECT_EQ(device.close(slave), 0);
    close(master);
}
