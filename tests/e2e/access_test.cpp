// Values from the command line through driver, pty and simulator, and back.
#include "tests/e2e/programs.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

namespace {

const QStringList TwoStations = {QStringLiteral("--stations"), QStringLiteral("1,2")};

QStringList plain(const QString& port, const QStringList& command) {
    return QStringList{"--port", port} + command;
}

QJsonArray jsonArray(const Ended& ended) {
    return QJsonDocument::fromJson(ended.output.toUtf8()).array();
}

/** The fields column of each frame in a trace that goes @p direction. */
QStringList frames(const QString& trace_file, const QString& direction) {
    QFile file(trace_file);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    QStringList found;
    for (const QByteArray& line : file.readAll().split('\n')) {
        const QStringList columns = QString::fromUtf8(line).split('\t');
        if (columns.value(1) == direction)
            found += columns.value(4);
    }
    return found;
}

} // namespace

TEST(EndToEnd, ReadsPlainAddressesOfAStation) {
    SimulatedLine line;
    line.command("set 1 0x101000 1234");
    line.command("set 1 0x20 200");
    const Ended ended =
        control({"--port", line.port(), "--station", "1", "read", "PA0011000", "NA20"});
    EXPECT_EQ(ended.status, 0) << qPrintable(ended.errors);
    EXPECT_EQ(ended.output.toStdString(), std::string("NAME       ADDRESS    STATION  VALUE\n"
                                                      "PA0011000  PA0011000  1        1234\n"
                                                      "NA20       NA20       1        200\n"));
    EXPECT_EQ(ended.errors.toStdString(), std::string());
}

TEST(EndToEnd, ShowsTheFormatsThatAreAskedFor) {
    SimulatedLine line;
    line.command("set 1 0x10 0x41ac0000");
    const auto value = [&](const QString& format) {
        const Ended ended = control(plain(line.port(), {"--format", format, "read", "NA10"}));
        return ended.output.section('\n', 1, 1).section(' ', -1);
    };
    EXPECT_EQ(value("hex"), QString("0x41ac0000"));
    EXPECT_EQ(value("dec"), QString("1101791232"));
    EXPECT_EQ(value("bits"), QString("0b01000001101011000000000000000000"));
    EXPECT_EQ(value("float"), QString("21.5"));
}

TEST(EndToEnd, PrintsJson) {
    SimulatedLine line;
    line.command("set 1 0x10 0xffff8005");
    const Ended ended =
        control(plain(line.port(), {"--json", "read", "NA10:int16", "NA10.0:bit:3", "NA10:hx"}));
    EXPECT_EQ(ended.status, 2);
    const QJsonArray values =
        jsonArray(control(plain(line.port(), {"--json", "read", "NA10:int16", "NA10.0:bit:3"})));
    ASSERT_EQ(values.size(), 2);
    EXPECT_EQ(values[0].toObject()["value"].toInt(), -32763);
    EXPECT_EQ(values[1].toObject()["value"].toArray(), QJsonArray({1, 0, 1}));
}

TEST(EndToEnd, ReadsEveryTagOfTheSampleProject) {
    SimulatedLine line(TwoStations);
    const Ended ended = control(onSample(line.port(), {"--json", "read"}));
    EXPECT_EQ(ended.status, 0) << qPrintable(ended.errors);
    EXPECT_EQ(jsonArray(ended).size(), 23 + 32);
}

TEST(EndToEnd, WritesTagsOfBothStations) {
    SimulatedLine line(TwoStations);
    const Ended ended =
        control(onSample(line.port(), {"write", "Zone 1 set point=850", "Gas flow=-5"}));
    EXPECT_EQ(ended.status, 0) << qPrintable(ended.errors);
    EXPECT_EQ(line.memory(1, 0x101001), 850u);
    EXPECT_EQ(line.memory(2, 0x101001), 0xfffbu) << "a word write clears the upper half";
}

TEST(EndToEnd, MergesWrittenBitsWithTheOthers) {
    SimulatedLine line(TwoStations);
    line.command("set 1 0x102000 0x80000002");
    const Ended ended = control(onSample(line.port(), {"write", "Heating=1"}));
    EXPECT_EQ(ended.status, 0) << qPrintable(ended.errors);
    EXPECT_EQ(line.memory(1, 0x102000), 0x80000003u);
}

TEST(EndToEnd, PutsManyAddressesIntoFramesOfFiftyAndWritesIntoFramesOfTwentyFive) {
    SimulatedLine line;
    QTemporaryDir directory;
    const QString trace = directory.filePath("trace");
    ASSERT_EQ(control(plain(line.port(), {"--trace", trace, "read", "NA1000:dword:120"})).status,
              0);
    const QStringList reads = frames(trace, "->");
    ASSERT_GE(reads.size(), 3);
    EXPECT_EQ(reads[0], QString("RN station=1 items=50 first=00001000"));
    EXPECT_EQ(reads[1], QString("RN station=1 items=50 first=00001032"));
    EXPECT_EQ(reads[2], QString("RN station=1 items=20 first=00001064"));

    QStringList numbers;
    for (int i = 0; i < 60; ++i)
        numbers += QString::number(i);
    const QString assignment = "NA1000:dword:60=" + numbers.join(',');
    ASSERT_EQ(control(plain(line.port(), {"--trace", trace, "write", assignment})).status, 0);
    EXPECT_EQ(
        frames(trace, "->").filter("WN"),
        QStringList({"WN station=1 items=25 first=00001000", "WN station=1 items=25 first=00001019",
                     "WN station=1 items=10 first=00001032"}));
    EXPECT_EQ(line.memory(1, 0x1000 + 59), 59u);
}

TEST(EndToEnd, WorksOverATcpSerialServer) {
    SimulatedLine line({"--tcp", "0"});
    line.command("set 1 0x10 7");
    const Ended ended = control(plain(line.port(), {"read", "NA10"}));
    EXPECT_EQ(ended.status, 0) << qPrintable(ended.errors);
    EXPECT_TRUE(ended.output.contains(" 7\n"));
}

TEST(EndToEnd, WatchesValuesThatMove) {
    SimulatedLine line({"--counter", "0x10:period=0.05"});
    const Ended ended = control(
        plain(line.port(), {"--json", "watch", "--count", "2", "--interval", "0.2", "NA10"}));
    EXPECT_EQ(ended.status, 0) << qPrintable(ended.errors);
    const QStringList rounds = ended.output.trimmed().split('\n');
    ASSERT_EQ(rounds.size(), 2);
    EXPECT_NE(rounds[0].section("\"value\":", 1).section(',', 0, 0),
              rounds[1].section("\"value\":", 1).section(',', 0, 0));
}

TEST(EndToEnd, TellsAboutDriverAndProjectWithoutALine) {
    const Ended ended = control({"--json", "info", "--project", SAMPLE_PROJECT});
    EXPECT_EQ(ended.status, 0) << qPrintable(ended.errors);
    const QJsonObject info = QJsonDocument::fromJson(ended.output.toUtf8()).object();
    EXPECT_EQ(info["driver"].toObject()["name"].toString(), QString("DMC50 v3"));
    EXPECT_EQ(info["driver"].toObject()["timeout_ms"].toInt(), 9000);
    EXPECT_EQ(info["links"].toArray()[0].toObject()["stations"].toArray(), QJsonArray({1, 2}));
}
