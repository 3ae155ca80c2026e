// Values from the command line through driver, pty and simulator, and back.
#include "tests/e2e/programs.h"

#include <QDateTime>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

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

TEST(EndToEnd, WatchesWithTheStateOfValuesAndStations) {
    SimulatedLine line;
    line.command("set 1 0x10 7");
    const QStringList watch = {"--timeout", "500", "--retries", "0",     "watch",
                               "--count",   "1",   "NA10",      "2-NA20"};
    const Ended json = control(QStringList{"--port", line.port(), "--json"} + watch);
    EXPECT_EQ(json.status, 1) << "a station is absent";
    const QJsonArray values = jsonArray(json);
    ASSERT_EQ(values.size(), 2) << qPrintable(json.errors);
    const QJsonObject good = values[0].toObject();
    EXPECT_EQ(good["value"].toInt(), 7);
    EXPECT_EQ(good["quality"].toString(), QString("good"));
    EXPECT_GE(good["sequence"].toInt(), 1);
    const QDateTime time = QDateTime::fromString(good["time"].toString(), Qt::ISODateWithMs);
    EXPECT_LT(time.msecsTo(QDateTime::currentDateTimeUtc()), 60000);
    const QJsonObject up = good["station_health"].toObject();
    EXPECT_EQ(up["state"].toString(), QString("up"));
    EXPECT_GT(up["worst_ms"].toDouble(), 0);
    EXPECT_GE(up["worst_ms"].toDouble(), up["answer_ms"].toDouble());
    EXPECT_TRUE(up.contains("since_s") && up.contains("withheld"));
    const QJsonObject bad = values[1].toObject();
    EXPECT_TRUE(bad["value"].isNull());
    EXPECT_EQ(bad["quality"].toString(), QString("bad"));
    EXPECT_EQ(bad["error"].toString(),
              QString("read station id#2 start address 00000020:DMC50 no response"));
    EXPECT_FALSE(bad["station_health"].toObject().contains("worst_ms"));

    const Ended table = control(QStringList{"--port", line.port()} + watch);
    EXPECT_TRUE(table.output.contains(QRegularExpression(
        "\n\nSTATION +STATE +SINCE +ANSWER +WORST +WITHHELD\n1 +up +[\\d.]+ s +[\\d.]+ ms")))
        << qPrintable(table.output);
}

TEST(EndToEnd, ShowsAChangeOnATerminalBeforeTheNextRound) {
    SimulatedLine line;
    line.command("set 1 0x10 111");
    TerminalProgram program({"--port", line.port(), "watch", "--interval", "600", "NA10"});
    ASSERT_TRUE(program.awaitOutput(" 111 "));
    line.command("set 1 0x10 222");
    EXPECT_TRUE(program.awaitOutput(" 222 "));
}

TEST(EndToEnd, LetsNoSlowLinkDelayAnother) {
    SimulatedLine silent({"--fault", "silence"});
    SimulatedLine line;
    line.command("set 1 0x10 5");
    const QTemporaryDir directory;
    QFile file(directory.filePath("panel.toml"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    const auto add = [&](const char* name, const QString& port, const char* panel_port) {
        file.write(QStringLiteral("[[link]]\nname = \"%1\"\nport = \"%2\"\nhmiport = \"%3\"\n"
                                  "timeout = 60000\nretry = 9\n"
                                  "[[node]]\nlink = \"%1\"\nstation = 1\ndefault = true\n"
                                  "[[tag]]\nlink = \"%1\"\nname = \"of %1\"\naddress = \"NA10\"\n")
                       .arg(QLatin1String(name), port, QLatin1String(panel_port))
                       .toUtf8());
    };
    add("a silent one", silent.port(), "COM1");
    add("a fast one", line.port(), "COM2");
    file.close();
    TerminalProgram program({"--project", directory.path(), "watch", "--interval", "600"});
    EXPECT_TRUE(program.awaitOutput(" 5 ")) << qPrintable(program.output());
    line.command("set 1 0x10 6");
    EXPECT_TRUE(program.awaitOutput(" 6 "));
}

TEST(EndToEnd, TellsHowTheStationsOfAProjectAre) {
    SimulatedLine line(TwoStations);
    line.command("station 2 silent");
    const Ended ended = control(onSample(line.port(), {"--json", "--timeout", "300", "info"}));
    EXPECT_EQ(ended.status, 0) << qPrintable(ended.errors);
    const QJsonObject link =
        QJsonDocument::fromJson(ended.output.toUtf8()).object()["links"].toArray()[0].toObject();
    EXPECT_EQ(link["line"].toString(), QString("open"));
    const QJsonArray stations = link["station_health"].toArray();
    ASSERT_EQ(stations.size(), 2);
    EXPECT_EQ(stations[0].toObject()["station"].toInt(), 1);
    EXPECT_EQ(stations[0].toObject()["state"].toString(), QString("up"));
    EXPECT_GT(stations[0].toObject()["answer_ms"].toDouble(), 0);
    EXPECT_EQ(stations[1].toObject()["station"].toInt(), 2);
    EXPECT_NE(stations[1].toObject()["state"].toString(), QString("up"));
    const Ended table = control(onSample(line.port(), {"--timeout", "300", "info"}));
    EXPECT_TRUE(table.output.contains(QRegularExpression("station 1 +up since ")))
        << qPrintable(table.output);
}

TEST(EndToEnd, TellsAboutDriverAndProjectWithoutALine) {
    const Ended ended = control({"--json", "info", "--project", SAMPLE_PROJECT});
    EXPECT_EQ(ended.status, 0) << qPrintable(ended.errors);
    const QJsonObject info = QJsonDocument::fromJson(ended.output.toUtf8()).object();
    EXPECT_EQ(info["driver"].toObject()["name"].toString(), QString("DMC50 v3"));
    EXPECT_EQ(info["driver"].toObject()["timeout_ms"].toInt(), 9000);
    EXPECT_EQ(info["links"].toArray()[0].toObject()["stations"].toArray(), QJsonArray({1, 2}));
    EXPECT_EQ(info["links"].toArray()[0].toObject()["line"].toString(),
              QString("/dev/ttyUSB0: no such device"));
}
