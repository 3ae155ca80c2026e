#include "trace/frametrace.h"

#include <QBuffer>
#include <QStringList>
#include <QTemporaryFile>

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

using trace::Direction;
using trace::FrameTrace;

namespace {

const QByteArray AnyRequest("\x02"
                            "0100XRN00LL00002016\x03"
                            "C1\r\n");
const QByteArray AnyReply("\x02"
                          "0100X00000000C8\x03"
                          "E7\r\n");

} // namespace

TEST(FrameTrace, WritesOneTabSeparatedLinePerFrame) {
    QBuffer device;
    device.open(QIODevice::WriteOnly);
    FrameTrace trace(&device);
    EXPECT_TRUE(trace.record(Direction::Request, AnyRequest, 5123456));
    EXPECT_TRUE(trace.record(Direction::Reply, AnyReply, 5139999));
    EXPECT_EQ(device.data().toStdString(),
              std::string("      5123.456\t->\t-\t<02>0100XRN00LL00002016<03>C1<0D><0A>"
                          "\tRN station=1 items=1 first=00002016\tok\n"
                          "      5139.999\t<-\t+16.543\t<02>0100X00000000C8<03>E7<0D><0A>"
                          "\treply station=1 end=00 data=1\tok\n"));
}

TEST(FrameTrace, TakesTheTimeFromTheMonotonicClock) {
    QBuffer device;
    device.open(QIODevice::WriteOnly);
    FrameTrace trace(&device);
    const qint64 before = trace::monotonicMicroseconds();
    trace.record(Direction::Request, AnyRequest);
    const qint64 after = trace::monotonicMicroseconds();
    const double recorded = device.data().trimmed().split('\t').first().toDouble() * 1000;
    EXPECT_GE(recorded, double(before) - 1);
    EXPECT_LE(recorded, double(after) + 1);
}

TEST(FrameTrace, AFileHoldsTheLineAtOnce) {
    QTemporaryFile device;
    ASSERT_TRUE(device.open());
    FrameTrace trace(&device);
    trace.record(Direction::Request, AnyRequest, 0);
    QFile reader(device.fileName());
    ASSERT_TRUE(reader.open(QIODevice::ReadOnly));
    EXPECT_TRUE(reader.readAll().endsWith("\tok\n"));
}

TEST(FrameTrace, ADeviceThatRefusesIsReportedOnce) {
    QFile device(QString::fromLatin1("/dev/full"));
    ASSERT_TRUE(device.open(QIODevice::WriteOnly));
    QStringList complaints;
    FrameTrace trace(&device, [&](const QString& error) { complaints += error; });
    EXPECT_FALSE(trace.record(Direction::Request, AnyRequest, 0));
    EXPECT_FALSE(trace.record(Direction::Request, AnyRequest, 1));
    EXPECT_EQ(complaints, QStringList(QString::fromLatin1("No space left on device")));
}

TEST(FrameTrace, LinesOfManyThreadsStayWhole) {
    QBuffer device;
    device.open(QIODevice::WriteOnly);
    FrameTrace trace(&device);
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&trace] {
            for (int n = 0; n < 100; ++n)
                trace.record(Direction::Request, AnyRequest, n);
        });
    for (std::thread& thread : threads)
        thread.join();
    const QList<QByteArray> lines = device.data().trimmed().split('\n');
    EXPECT_EQ(lines.size(), 400);
    for (const QByteArray& line : lines)
        EXPECT_TRUE(line.endsWith("first=00002016\tok")) << line.constData();
}
