// What goes wrong around a panel: each gives its text and its exit status.
#include "tests/e2e/programs.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>

#include <gtest/gtest.h>

#include <memory>

namespace {

const QStringList TwoStations = {"--stations", "1,2"};
const QStringList Impatient = {"--timeout", "100", "--retries",
                               "0"}; // as far as the driver lets it
constexpr qint64 AtOnceMsecs = 1000;

/** The panel directory of the sample project. */
QString builtPanel(const QTemporaryDir& directory) {
    const QString panel = directory.filePath("panel");
    EXPECT_EQ(control({"project", "build", SAMPLE_PROJECT, "-o", panel}).status, 0);
    return panel;
}

Ended readOnPanel(const QString& panel, const QString& port) {
    return control(QStringList{"--project", panel, "--port", port} + Impatient +
                   QStringList{"read", "Heating"});
}

} // namespace

TEST(EndToEndFailure, GivesTheDriversTextForAStationThatNeverAnswers) {
    SimulatedLine line(TwoStations);
    line.command("station 2 silent");
    const Ended ended = control(
        onSample(line.port(), Impatient + QStringList{"read", "Gas flow", "Zone 1 set point"}));
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(
        ended.errors.toStdString(),
        std::string("dmc50ctl: read station id#2 start address 00101001:DMC50 no response\n"));
    EXPECT_TRUE(ended.output.contains("Zone 1 set point  PA0011001  1        0"));
}

TEST(EndToEndFailure, GivesTheDriversTextForARefusedWrite) {
    SimulatedLine line({"--fault", "end-code:command=WN,value=0x4A"});
    const Ended ended =
        control(QStringList{"--port", line.port()} + Impatient + QStringList{"write", "NA10=5"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.errors.toStdString(),
              std::string("dmc50ctl: write station id#1 address 00000010end code 4AH\n"));
}

TEST(EndToEndFailure, GivesTheDriversTextForAReplyThatStopsHalfWay) {
    SimulatedLine line({"--fault", "truncate:at=10"});
    const Ended ended =
        control(QStringList{"--port", line.port()} + Impatient + QStringList{"read", "NA10"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.errors.toStdString(),
              std::string("dmc50ctl: read station id#1 start address 00000010:read: "
                          "packet loss\n"));
}

TEST(EndToEndFailure, RecoversFromSingleFaultsByRetrying) {
    for (const char* fault : {"checksum:on=1", "wrong-station:on=1", "truncate:on=1,at=9",
                              "noise-before:on=1,bytes=<FF>A", "silence:on=1"}) {
        SimulatedLine line({"--fault", fault});
        line.command("set 1 0x10 77");
        const Ended ended =
            control({"--port", line.port(), "--timeout", "100", "--retries", "2", "read", "NA10"});
        EXPECT_EQ(ended.status, 0) << fault << qPrintable(ended.errors);
        EXPECT_TRUE(ended.output.contains(" 77\n")) << fault << qPrintable(ended.output);
    }
}

TEST(EndToEndFailure, ConnectsAgainToATcpPeerThatCloses) {
    SimulatedLine line({"--tcp", "0", "--fault", "close:on=1"});
    line.command("set 1 0x10 7");
    const Ended ended =
        control({"--port", line.port(), "--timeout", "500", "--retries", "3", "read", "NA10"});
    EXPECT_EQ(ended.status, 0) << qPrintable(ended.errors);
    EXPECT_TRUE(ended.output.contains(" 7\n"));
    EXPECT_EQ(ended.errors.count("line lost: "), 1);
    EXPECT_EQ(ended.errors.count("line open again"), 1);
}

TEST(EndToEndFailure, GoesOnWhenAPulledAdapterIsBack) {
    const QTemporaryDir directory;
    const QStringList link = {"--link", directory.filePath("adapter")};
    auto line = std::make_unique<SimulatedLine>(link);
    line->command("set 1 0x10 11");
    ControlProgram program({"--port", line->port(), "--timeout", "100", "--retries", "0", "--json",
                            "watch", "--interval", "0.05", "NA10"});
    ASSERT_TRUE(program.awaitOutput("\"value\":11"));
    line->kill();
    line = std::make_unique<SimulatedLine>(link);
    line->command("set 1 0x10 22");
    EXPECT_TRUE(program.awaitOutput("\"value\":22"));
    program.interrupt();
    const Ended ended = program.end();
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.errors.count("line lost: "), 1) << qPrintable(ended.errors);
    EXPECT_EQ(ended.errors.count("line open again"), 1) << qPrintable(ended.errors);
}

TEST(EndToEndFailure, EndsWatchingWithinASecondOfCtrlC) {
    SimulatedLine line;
    ControlProgram program({"--port", line.port(), "watch", "--interval", "60", "NA10"});
    ASSERT_TRUE(program.awaitOutput("NA10"));
    QElapsedTimer waited;
    waited.start();
    program.interrupt();
    EXPECT_EQ(program.end().status, 0);
    EXPECT_LT(waited.elapsed(), AtOnceMsecs);
}

TEST(EndToEndFailure, EndsWithinASecondOfCtrlCOnASilentLine) {
    SimulatedLine line({"--fault", "silence"});
    QTemporaryDir directory;
    const QString trace = directory.filePath("trace");
    ControlProgram program({"--port", line.port(), "--trace", trace, "read", "NA10"});
    QFile file(trace);
    while (!file.exists() || file.size() == 0) // until the request is out
        ASSERT_FALSE(program.hasEndedWithin(10));
    QElapsedTimer waited;
    waited.start();
    program.interrupt();
    EXPECT_EQ(program.end().status, 130);
    EXPECT_LT(waited.elapsed(), AtOnceMsecs);
}

TEST(EndToEndFailure, SaysOnceThatTheTraceIsFullAndReadsOn) {
    SimulatedLine line;
    const Ended ended =
        control({"--port", line.port(), "--trace", "/dev/full", "read", "NA10", "NA20"});
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.errors.toStdString(),
              std::string("dmc50ctl: /dev/full: No space left on device; what cannot be "
                          "written is lost\n"));
}

TEST(EndToEndFailure, SaysWhatIsWrongWithThePort) {
    const auto errors = [](const QString& port) {
        const Ended ended = control({"--port", port, "read", "NA10"});
        EXPECT_EQ(ended.status, 1);
        return ended.errors.toStdString();
    };
    EXPECT_EQ(errors("/dev/ttyUSB99"), std::string("dmc50ctl: /dev/ttyUSB99: no such device\n"));
    EXPECT_EQ(errors("tcp://127.0.0.1:1"),
              std::string("dmc50ctl: tcp://127.0.0.1:1: Connection refused\n"));
}

TEST(EndToEndFailure, TellsBadUsageApart) {
    for (const QStringList& arguments :
         {QStringList{}, QStringList{"raed"}, QStringList{"read"}, QStringList{"--port", "COM1"},
          QStringList{"--port", "/dev/x", "read"}, QStringList{"--port", "/dev/x", "read", "PAX"},
          QStringList{"--port", "/dev/x", "write", "NA10"},
          QStringList{"--port", "/dev/x", "write", "NA10=x"},
          QStringList{"--port", "/dev/x", "read", "NA10", "--format", "octal"},
          QStringList{"--project", SAMPLE_PROJECT, "read", "no such tag"}}) {
        const Ended ended = control(arguments);
        EXPECT_EQ(ended.status, 2) << qPrintable(arguments.join(' '));
        EXPECT_FALSE(ended.errors.isEmpty()) << qPrintable(arguments.join(' '));
        EXPECT_EQ(ended.output.toStdString(), std::string()) << qPrintable(arguments.join(' '));
    }
}

TEST(EndToEndFailure, NamesThePlaceOfAMistakeInAProject) {
    QTemporaryDir directory;
    QFile file(directory.filePath("panel.toml"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[[link]]\nname = \"x\"\nprot = \"/dev/ttyUSB0\"\n");
    file.close();
    const Ended ended = control({"project", "build", directory.path()});
    EXPECT_EQ(ended.status, 1);
    EXPECT_TRUE(ended.errors.contains(file.fileName() + ":3:1: unknown key 'prot' in [[link]]; did "
                                                        "you mean 'port'?\n"));
    EXPECT_EQ(control({"--project", directory.path(), "read"}).status, 1);
}

TEST(EndToEndFailure, RunsOnAPanelDirectoryThatWasBuilt) {
    SimulatedLine line(TwoStations);
    QTemporaryDir directory;
    const Ended ended = readOnPanel(builtPanel(directory), line.port());
    EXPECT_EQ(ended.status, 0) << qPrintable(ended.errors);
}

TEST(EndToEndFailure, GivesTheDriversTextForAMissingLink) {
    SimulatedLine line(TwoStations);
    QTemporaryDir directory;
    const QString panel = builtPanel(directory);
    {
        QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE", "breaker");
        database.setDatabaseName(panel + "/compile/database/database");
        ASSERT_TRUE(database.open());
        QSqlQuery("DELETE FROM LINK", database);
    }
    QSqlDatabase::removeDatabase("breaker");
    const Ended ended = readOnPanel(panel, line.port());
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.errors.toStdString(),
              std::string("dmc50ctl: failed to get default station id\n"));
}

TEST(EndToEndFailure, GivesTheDriversTextForADatabaseThatCannotBeOpened) {
    SimulatedLine line(TwoStations);
    QTemporaryDir directory;
    const QString panel = builtPanel(directory);
    const QString database = panel + "/compile/database/database";
    ASSERT_TRUE(QFile::remove(database));
    ASSERT_TRUE(QDir().mkdir(database)); // nobody, not even root, can read it as a file
    const Ended ended = readOnPanel(panel, line.port());
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.errors.toStdString(), std::string("dmc50ctl: can not open database\n"));
}

TEST(EndToEndFailure, SaysWhenTheDriverIsMissing) {
    const Ended ended = control({"--plugin", "/nowhere/libdmc50v3.so", "info"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.errors.toStdString(),
              std::string("dmc50ctl: /nowhere/libdmc50v3.so: no such file\n"));
}

TEST(EndToEndFailure, MakesAProjectThatBuildsAtOnceAndOverwritesNone) {
    QTemporaryDir directory;
    const QString project = directory.filePath("fresh");
    EXPECT_EQ(control({"project", "new", project}).status, 0);
    EXPECT_EQ(control({"project", "build", project}).output, project + "/panel\n");
    EXPECT_TRUE(QFile::exists(project + "/panel/compile/database/database"));
    EXPECT_EQ(control({"project", "new", project}).status, 1);
}
