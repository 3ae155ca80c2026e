// Programs between the simulated controller and files on a stick, by dmc50ctl.
#include "tests/e2e/programs.h"
#include "tests/e2e/stick.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <unistd.h>

namespace {

const QStringList Paced = {"--baud", "38400", "--turnaround", "5"};
constexpr qint64 AtOnceMsecs = 1000;

/** dmc50ctl, root without root's right to mount. */
const QStringList WithoutMounting = {"setpriv", "--bounding-set", "-sys_admin", DMC50CTL};

QStringList recipe(const QString& port, const Stick& stick, const QStringList& command) {
    return QStringList{"--port", port, "recipe"} + command + QStringList{"--stick", stick.path()};
}

quint32 valueAddress(int number, int column) {
    return 0x1000 + 0x20 * quint32(number - 1) + quint32(column - 1);
}

/** The controller's memory beside the rows of a file, value by value, without the
 *  bits that the driver never writes. */
void expectHeld(SimulatedLine& line, const QList<QStringList>& rows) {
    for (int number = 1; number < rows.size(); ++number) {
        ASSERT_EQ(rows[number].size(), 25);
        for (int column = 1; column <= 24; ++column)
            EXPECT_EQ(line.memory(1, valueAddress(number, column)),
                      rows[number][column].toUInt() & 0xff00ffff)
                << "program " << number << ", value " << column;
    }
}

} // namespace

TEST(Recipe, PullsAndPushesAllProgramsOnAPacedLine) {
    SimulatedLine line(Paced);
    line.command("set 1 0x1003 0xff00fffe");
    Stick stick;
    const Ended pulled = control(recipe(line.port(), stick, {"pull", "7"}));
    EXPECT_EQ(pulled.status, 0) << qPrintable(pulled.errors);
    EXPECT_TRUE(pulled.output.contains("32 programs pulled to " + stick.file("PROG_7.txt")));
    EXPECT_EQ(stick.names(), QStringList("PROG_7.txt"));
    QList<QStringList> rows = stick.table("PROG_7.txt");
    ASSERT_EQ(rows.size(), 33);
    expectHeld(line, rows);
    EXPECT_EQ(rows[1][4], QString("4278255614"));

    rows[32][1] = "1234";
    stick.write("PROG_7.txt", rows);
    line.command("set 1 0x1001 99");
    line.command("set 1 0x13f7 99");
    const Ended pushed = control(recipe(line.port(), stick, {"push", "7"}));
    EXPECT_EQ(pushed.status, 0) << qPrintable(pushed.errors);
    EXPECT_TRUE(pushed.output.contains("32 programs pushed from " + stick.file("PROG_7.txt")));
    EXPECT_EQ(line.memory(1, 0x13e0), 1234u);
    expectHeld(line, rows);
}

TEST(Recipe, WorksOnAProjectAndPrintsJson) {
    SimulatedLine line({"--stations", "1,2"});
    Stick stick;
    const Ended ended = control(onSample(
        line.port(), {"--json", "recipe", "pull", "7", "--count", "3", "--stick", stick.path()}));
    EXPECT_EQ(ended.status, 0) << qPrintable(ended.errors);
    EXPECT_EQ(ended.output, "{\"file\":\"" + stick.file("PROG_7.txt") +
                                "\",\"programs\":[1,2,3],\"problems\":[]}\n");
}

TEST(Recipe, MakesABlankFileWithoutAController) {
    Stick stick;
    const Ended ended = control({"recipe", "template", "--count", "3", "--stick", stick.path()});
    EXPECT_EQ(ended.status, 0) << qPrintable(ended.errors);
    EXPECT_TRUE(
        ended.output.endsWith("blank file for 3 programs: " + stick.file("PROG_template.txt\n")));
    QList<QStringList> rows = stick.table("PROG_template.txt");
    ASSERT_EQ(rows.size(), 4);
    EXPECT_EQ(rows.mid(1), Stick::blank(3).mid(1));
}

TEST(Recipe, SaysThatNoStickIsThere) {
    SimulatedLine line;
    for (const char* command : {"pull", "push"}) {
        const Ended ended = control({"--port", line.port(), "recipe", command, "7"});
        EXPECT_EQ(ended.status, 1);
        EXPECT_EQ(ended.errors.section("dmc50ctl: ", 1).toStdString(),
                  std::string("The system can't not detect the USB Stick.\n"
                              "dmc50ctl: mount a stick, or give a folder with --stick DIR\n"));
    }
}

TEST(Recipe, NamesAProgramThatTheControllerDoesNotGive) {
    SimulatedLine line({"--fault", "silence:command=RN,on=2"});
    Stick stick;
    const Ended ended = control(QStringList{"--timeout", "100", "--retries", "0"} +
                                recipe(line.port(), stick, {"pull", "7", "--count", "3"}));
    EXPECT_EQ(ended.status, 1);
    EXPECT_TRUE(ended.output.contains("2 programs pulled to ")) << qPrintable(ended.output);
    EXPECT_TRUE(ended.errors.contains("program 2: not in the file; the controller did not answer"))
        << qPrintable(ended.errors);
    ASSERT_EQ(stick.table("PROG_7.txt").size(), 3);
    EXPECT_EQ(stick.table("PROG_7.txt")[2][0], QString("程序3"));

    const Ended pushed = control(recipe(line.port(), stick, {"push", "7"}));
    EXPECT_EQ(pushed.status, 1);
    EXPECT_TRUE(pushed.errors.contains("row 2 is labelled for program 3, but would be written to "
                                       "program 2\n"))
        << qPrintable(pushed.errors);
}

TEST(Recipe, PrintsTheLogOfAPullWhoseStationFallsSilent) {
    SimulatedLine line(Paced);
    Stick stick;
    ControlProgram program(QStringList{"--timeout", "5500", "--retries", "0"} +
                           recipe(line.port(), stick, {"pull", "7"}));
    ASSERT_TRUE(program.awaitOutput("pulling: 25 %"));
    line.command("station 1 silent");
    const Ended ended = program.end();
    EXPECT_EQ(ended.status, 1);
    EXPECT_TRUE(ended.errors.contains("READ_PROG_7_ERROR.txt says:")) << qPrintable(ended.errors);
    EXPECT_TRUE(ended.errors.contains("dmc50ctl: Reading Data Timeout,Please check the "
                                      "communication or the address [NA1"));
    EXPECT_EQ(stick.names(), QStringList("READ_PROG_7_ERROR.txt")) << "no program file";
}

TEST(Recipe, NeverTakesALostPushForASuccess) {
    SimulatedLine line({"--fault", "silence:command=WN"});
    Stick stick;
    QList<QStringList> rows = Stick::blank(2);
    rows[1][1] = "81";
    stick.write("PROG_7.txt", rows);
    const Ended ended = control(QStringList{"--timeout", "100", "--retries", "0"} +
                                recipe(line.port(), stick, {"push", "7"}));
    EXPECT_EQ(ended.status, 1);
    EXPECT_FALSE(ended.output.contains("pushed from")) << qPrintable(ended.output);
    EXPECT_TRUE(ended.errors.contains("program 1, value 1: the file says 81, the controller holds "
                                      "80\n"))
        << qPrintable(ended.errors);
    EXPECT_EQ(line.memory(1, 0x1000), 80u);
}

TEST(Recipe, EndsAPushWhoseStationFallsSilent) {
    SimulatedLine line(Paced);
    Stick stick;
    stick.write("PROG_7.txt", Stick::blank(32));
    ControlProgram program(QStringList{"--timeout", "4000", "--retries", "0"} +
                           recipe(line.port(), stick, {"push", "7"}));
    ASSERT_TRUE(program.awaitOutput("pushing: 0 %"));
    line.command("station 1 silent");
    const Ended ended = program.end();
    EXPECT_EQ(ended.status, 1);
    EXPECT_FALSE(ended.output.contains("pushed from")) << qPrintable(ended.output);
    EXPECT_TRUE(ended.errors.contains("the controller does not answer"))
        << qPrintable(ended.errors);
    EXPECT_TRUE(ended.errors.contains("the controller may hold a part of the programs"));
}

TEST(Recipe, RefusesBadFieldsWithTheDriversLogAndWritesNothing) {
    SimulatedLine line;
    Stick stick;
    QList<QStringList> rows = Stick::blank(5);
    rows[1][1] = "abc";
    rows[3][7] = "";
    rows[5][24] = "1.5";
    stick.write("PROG_7.txt", rows);
    const Ended ended = control(recipe(line.port(), stick, {"push", "7"}));
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(
        ended.errors.section("dmc50ctl: ", 1).toStdString(),
        std::string("the driver has given up; its WRITE_PROG_7_ERROR.txt says:\n"
                    "dmc50ctl: The value [abc] at row 0 and column 1 is invalid, please check it.\n"
                    "dmc50ctl: The value [] at row 2 and column 7 is invalid, please check it.\n"
                    "dmc50ctl: The value [1.5] at row 4 and column 24 is invalid, please check it."
                    "\n"));
    EXPECT_EQ(line.memory(1, 0x1000), 80u) << "as from the factory";
}

TEST(Recipe, TellsAValueThatTheDriverCannotWriteWhole) {
    SimulatedLine line;
    Stick stick;
    QList<QStringList> rows = Stick::blank(2);
    rows[2][3] = "70000";
    stick.write("PROG_7.txt", rows);
    const Ended ended = control(recipe(line.port(), stick, {"push", "7"}));
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(line.memory(1, valueAddress(2, 3)), 4464u);
    EXPECT_TRUE(ended.errors.contains("program 2, value 3: the file says 70000, the controller "
                                      "holds 4464; the driver sets bits 16 to 23 to 0\n"))
        << qPrintable(ended.errors);
}

TEST(Recipe, LetsTheUserChooseOneOfSeveralFiles) {
    SimulatedLine line;
    Stick stick;
    QList<QStringList> rows = Stick::blank(1);
    stick.write("PROG_7.txt", rows);
    rows[1][1] = "815";
    stick.write("PROG_7_new.txt", rows);
    const QStringList command = {"push", "7", "--count", "1"};
    const Ended open = control(recipe(line.port(), stick, command));
    EXPECT_EQ(open.status, 1);
    EXPECT_TRUE(open.errors.contains("choose one with --file: PROG_7.txt, PROG_7_new.txt\n"))
        << qPrintable(open.errors);
    const Ended chosen =
        control(recipe(line.port(), stick, command + QStringList{"--file", "PROG_7_new.txt"}));
    EXPECT_EQ(chosen.status, 0) << qPrintable(chosen.errors);
    EXPECT_EQ(line.memory(1, 0x1000), 815u);
    EXPECT_EQ(control(recipe(line.port(), stick, command + QStringList{"--file", "x"})).status, 1);
}

TEST(Recipe, EndsWithinASecondOfCtrlC) {
    SimulatedLine line(Paced);
    Stick stick;
    stick.write("PROG_8.txt", Stick::blank(32));
    for (const QStringList& command : {QStringList{"pull", "7"}, QStringList{"push", "8"}}) {
        ControlProgram program(recipe(line.port(), stick, command));
        ASSERT_TRUE(program.awaitOutput("25 %") || program.awaitOutput("45 %"));
        QElapsedTimer waited;
        waited.start();
        program.interrupt();
        const Ended ended = program.end();
        EXPECT_EQ(ended.status, 130);
        EXPECT_LT(waited.elapsed(), AtOnceMsecs);
        EXPECT_TRUE(ended.errors.contains("dmc50ctl: interrupted")) << qPrintable(ended.errors);
    }
    EXPECT_FALSE(stick.names().contains("PROG_7.txt")) << "nothing half pulled";
}

TEST(Recipe, SaysPlainlyThatTheKernelRefusesAPrivateMount) {
    Stick stick;
    const QTemporaryDir folder;
    QProcess refusing; // nobody gets a user name space in a chroot
    refusing.start(CHROOT_SCRIPT, QStringList(folder.path()) + WithoutMounting +
                                      QStringList({"recipe", "template", "--stick", stick.path()}));
    ASSERT_TRUE(refusing.waitForFinished());
    EXPECT_EQ(refusing.exitCode(), 1);
    EXPECT_EQ(refusing.readAllStandardError().toStdString(),
              "dmc50ctl: this kernel refuses a private mount of " + stick.path().toStdString() +
                  " (Operation not permitted)\n");
}

TEST(Recipe, FindsAStickThatIsMounted) {
    QProcess program;
    program.start(MOUNTED_STICK_SCRIPT, {DMC50CTL, "recipe", "template"});
    ASSERT_TRUE(program.waitForFinished());
    EXPECT_TRUE(QString::fromUtf8(program.readAllStandardOutput())
                    .endsWith("/media/usb0/PROG_template.txt\nPROG_template.txt\n"))
        << program.readAllStandardError().constData();
}

TEST(Recipe, EndsWithinASecondOfCtrlCOnASilentLine) {
    SimulatedLine line({"--fault", "silence"});
    Stick stick;
    ControlProgram program(recipe(line.port(), stick, {"pull", "7"}));
    ASSERT_TRUE(program.awaitOutput("pulling: 0 %"));
    QElapsedTimer waited;
    waited.start();
    program.interrupt();
    EXPECT_EQ(program.end().status, 130);
    EXPECT_LT(waited.elapsed(), AtOnceMsecs);
}

TEST(Recipe, NeedsNoRootForAStickWhereEverybodyMayHaveNameSpaces) {
    const bool may_have_them = QProcess::execute("unshare", {"--user", "true"}) == 0;
    Stick stick;
    QStringList command = WithoutMounting;
    if (geteuid() != 0)
        command = QStringList(DMC50CTL);
    command += QStringList({"recipe", "template", "--count", "1", "--stick", stick.path()});
    QProcess program;
    program.start(command.takeFirst(), command);
    ASSERT_TRUE(program.waitForFinished());
    EXPECT_EQ(program.exitCode(), may_have_them ? 0 : 1)
        << program.readAllStandardError().constData();
    EXPECT_EQ(stick.names(), may_have_them ? QStringList("PROG_template.txt") : QStringList());
}

TEST(Recipe, WorksInAChrootThatIsNoMountPoint) {
    Stick stick;
    const QTemporaryDir folder;
    QProcess program;
    program.start(CHROOT_SCRIPT, {folder.path(), DMC50CTL, "recipe", "template", "--count", "1",
                                  "--stick", stick.path()});
    ASSERT_TRUE(program.waitForFinished());
    EXPECT_EQ(program.exitCode(), 0) << program.readAllStandardError().constData();
    EXPECT_EQ(stick.names(), QStringList("PROG_template.txt"));
}

TEST(Recipe, TellsBadUsageApart) {
    for (const QStringList& command :
         {QStringList{}, QStringList{"pull"}, QStringList{"pull", "x"}, QStringList{"pull", "-1"},
          QStringList{"pull", "7"}, QStringList{"--port", "/dev/x", "pull", "7", "--count", "33"},
          QStringList{"--port", "/dev/x", "push", "7", "--count", "0"},
          QStringList{"--project", SAMPLE_PROJECT, "pull", "7", "--link", "no such link"}}) {
        const Ended ended = control(QStringList{"recipe"} + command);
        EXPECT_EQ(ended.status, 2) << qPrintable(command.join(' '));
        EXPECT_FALSE(ended.errors.isEmpty()) << qPrintable(command.join(' '));
        EXPECT_EQ(ended.output.toStdString(), std::string()) << qPrintable(command.join(' '));
    }
}
