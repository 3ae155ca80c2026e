// The program dmc50sim as its users start it.
#include "tests/support/temporarydirectory.h"
#include "tests/unit/simulator/lineclient.h"
#include "tests/unit/simulator/wire.h"

#include <QProcess>

#include <gtest/gtest.h>

#include <csignal>

namespace {

constexpr int UntilItHappens = -1; // ctest ends a test that waits in vain

/** One run of the program; killed at the latest with this object. */
class Program {
public:
    explicit Program(const QStringList& arguments) {
        m_process.start(QString::fromLatin1(DMC50SIM_PROGRAM), arguments);
        m_process.waitForStarted(UntilItHappens);
    }
    ~Program() {
        m_process.kill();
        m_process.waitForFinished(UntilItHappens);
    }

    /** The next line of the standard output. */
    QString readLine() {
        while (!m_process.canReadLine() && m_process.waitForReadyRead(UntilItHappens)) {
        }
        return QString::fromLocal8Bit(m_process.readLine()).trimmed();
    }

    void write(const char* text) { m_process.write(text); }
    void closeInput() { m_process.closeWriteChannel(); }
    void signal(int number) const { ::kill(pid_t(m_process.processId()), number); }

    /** The exit status, or -1 when it did not end by itself. */
    int exitStatus() {
        const bool ended = m_process.waitForFinished(UntilItHappens);
        return ended && m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
    }

    QString errors() { return QString::fromLocal8Bit(m_process.readAllStandardError()); }

private:
    QProcess m_process;
};

QStringList words(const char* text) {
    return QString::fromLatin1(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

const QByteArray CheckRequest = wire("<02>0100XRN00LL00002016<03>C1<0D><0A>");
const char CheckReply[] = "<02>0100X0000000000<03>02<0D><0A>";

} // namespace

TEST(Dmc50Sim, PrintsItsPathAnswersAndQuits) {
    Program program({});
    const QString path = program.readLine();
    LineClient client;
    ASSERT_TRUE(client.open(path)) << shown(path);
    EXPECT_EQ(shown(client.exchange(CheckRequest, 21)), CheckReply);
    program.write("set 1 0x20 7\ndump 1 0x20 1\nquit\nset 1 0x20 8\n");
    EXPECT_EQ(shown(program.readLine()), "0x00000020 0x00000007 7");
    EXPECT_EQ(shown(program.readLine()), "0x00000020 0x00000007 7");
    EXPECT_EQ(shown(program.readLine()), "bye");
    EXPECT_EQ(program.exitStatus(), 0);
    EXPECT_EQ(shown(program.readLine()), "");
}

TEST(Dmc50Sim, EndsCleanlyOnASignalEvenWhileAReplyIsFarAway) {
    for (int number : {SIGINT, SIGTERM}) {
        Program program(words("--fault late:ms=3600000"));
        LineClient client;
        ASSERT_TRUE(client.open(program.readLine()));
        client.write(CheckRequest);
        program.signal(number);
        EXPECT_EQ(program.exitStatus(), 0);
    }
}

TEST(Dmc50Sim, GoesOnWithoutAnInput) {
    Program program({});
    program.closeInput();
    LineClient client;
    ASSERT_TRUE(client.open(program.readLine()));
    EXPECT_EQ(shown(client.exchange(CheckRequest, 21)), CheckReply);
    program.signal(SIGTERM);
    EXPECT_EQ(program.exitStatus(), 0);
}

TEST(Dmc50Sim, SaysOnceThatItsLogOrTraceIsFullAndGoesOn) {
    for (const char* option : {"--log", "--trace"}) {
        Program program({QLatin1String(option), QLatin1String("/dev/full")});
        LineClient client;
        ASSERT_TRUE(client.open(program.readLine()));
        EXPECT_EQ(shown(client.exchange(CheckRequest, 21)), CheckReply) << option;
        EXPECT_EQ(shown(client.exchange(CheckRequest, 21)), CheckReply) << option;
        program.signal(SIGTERM);
        EXPECT_EQ(program.exitStatus(), 0) << option;
        EXPECT_EQ(shown(program.errors()),
                  "/dev/full: No space left on device; what cannot be written is lost\n")
            << option;
    }
}

TEST(Dmc50Sim, DoesAllThatItsOptionsSay) {
    TemporaryDirectory directory;
    directory.write(QLatin1String("memory"), "2-0x30 0x1234\n");
    directory.write(QLatin1String("faults.toml"), "[[fault]]\nkind = \"end-code\"\nstation = 1\n");
    const auto file = [&](const char* name) { return directory.filePath(QLatin1String(name)); };
    Program program(words("--tcp 0 --stations 1,2 --baud 115200 --turnaround 0.5 --seed 9 "
                          "--fault echo:station=2 --counter 2-0x31:from=5,period=3600")
                    << QLatin1String("--memory") << file("memory") << QLatin1String("--faults")
                    << file("faults.toml") << QLatin1String("--save") << file("saved")
                    << QLatin1String("--log") << file("log") << QLatin1String("--trace")
                    << file("trace"));
    const QString path = program.readLine();
    EXPECT_TRUE(path.startsWith(QLatin1String("tcp://127.0.0.1:"))) << shown(path);
    LineClient client;
    ASSERT_TRUE(client.open(path));
    EXPECT_EQ(shown(client.exchange(CheckRequest, 13)), shown(framed("0100X41")));
    const QByteArray request = readRequest(2, 0x30, 2);
    EXPECT_EQ(shown(client.exchange(request, request.size() + 29)),
              shown(request + framed("0200X000000123400000005")));
    program.signal(SIGTERM);
    EXPECT_EQ(program.exitStatus(), 0);
    EXPECT_TRUE(directory.read(QLatin1String("saved")).contains("\n2-0x00000031 5\n"));
    EXPECT_TRUE(directory.read(QLatin1String("log")).contains("fault end-code value=65\n"));
    EXPECT_EQ(directory.read(QLatin1String("trace")).count('\n'), 4);
}

TEST(Dmc50Sim, SaysWhatIsWrongAndEndsWithItsStatus) {
    struct Row {
        const char* arguments;
        int status;
        const char* text;
    };
    const Row rows[] = {
        {"--nonsense", 2, "--nonsense"},
        {"--pty --tcp 1", 2, "--pty excludes --tcp"},
        {"--stations 0", 2, "--stations: Value 0 not in range"},
        {"--stations 1,x", 2, "x"},
        {"--baud fast", 2, "fast"},
        {"--tcp 70000", 2, "--tcp: \"70000\" must be a port, 0 to 65535, or ADDRESS:PORT"},
        {"--tcp somewhere:1", 2, "--tcp: \"somewhere:1\" must be a port"},
        {"--tcp 0 --link x", 2, "--link: only goes with a pseudo-terminal"},
        {"--fault lost", 2, "--fault: unknown kind \"lost\""},
        {"--ramp x", 2, "--ramp: \"x\" is no address"},
        {"--ramp 3-1", 2, "--ramp: station 3 is not among --stations"},
        {"--faults /nowhere/f", 2, "--faults: /nowhere/f: No such file or directory"},
        {"--memory /nowhere/m", 1, "/nowhere/m: No such file or directory"},
        {"--log /nowhere/l", 1, "/nowhere/l: No such file or directory"},
        {"--trace /nowhere/t", 1, "/nowhere/t: No such file or directory"},
        {"--link /nowhere/link", 1, "/nowhere/link: "},
        {"--device /dev/nowhere", 1, "/dev/nowhere: No such file or directory"},
    };
    for (const Row& row : rows) {
        Program program(words(row.arguments));
        EXPECT_EQ(program.exitStatus(), row.status) << row.arguments;
        const std::string errors = shown(program.errors());
        EXPECT_NE(errors.find(row.text), std::string::npos) << row.arguments << "\n" << errors;
    }
}

TEST(Dmc50Sim, ShowsHelp) {
    Program program(words("--help"));
    EXPECT_EQ(shown(program.readLine()).substr(0, 27), "Simulates DMC50 controllers");
    EXPECT_EQ(program.exitStatus(), 0);
}
