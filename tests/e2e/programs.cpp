#include "tests/e2e/programs.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <csignal>
#include <poll.h>
#include <pty.h>
#include <unistd.h>

namespace {

constexpr int EndMsecs = 60000; // a program that takes longer hangs

} // namespace

SimulatedLine::SimulatedLine(const QStringList& arguments) {
    QStringList all = arguments;
    if (!arguments.contains(QStringLiteral("--tcp")) &&
        !arguments.contains(QStringLiteral("--link")))
        all << QStringLiteral("--link") << m_directory.filePath(QStringLiteral("line"));
    m_process.start(QStringLiteral(DMC50SIM), all);
    m_port = readLine(); // printed once the line is up
    EXPECT_FALSE(m_port.isEmpty()) << m_process.readAllStandardError().constData();
}

SimulatedLine::~SimulatedLine() {
    kill();
}

void SimulatedLine::kill() {
    m_process.kill();
    m_process.waitForFinished(EndMsecs);
}

QString SimulatedLine::readLine() {
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead(EndMsecs))
            return QString();
    }
    return QString::fromUtf8(m_process.readLine()).trimmed();
}

void SimulatedLine::command(const QByteArray& line) {
    m_process.write(line + '\n');
    readLine(); // its answer, once it has been carried out
}

quint32 SimulatedLine::memory(int station, quint32 address) {
    const QString request = QStringLiteral("dump %1 0x%2 1\n").arg(station).arg(address, 0, 16);
    m_process.write(request.toLatin1());
    const QString answer = readLine(); // address, value in hexadecimal, value in decimal
    return answer.section(QLatin1Char(' '), 2, 2).toUInt();
}

ControlProgram::ControlProgram(const QStringList& arguments) {
    m_process.start(QStringLiteral(DMC50CTL), arguments);
    EXPECT_TRUE(m_process.waitForStarted(EndMsecs));
}

ControlProgram::~ControlProgram() {
    m_process.kill();
    m_process.waitForFinished(EndMsecs);
}

bool ControlProgram::awaitOutput(const QString& text) {
    QElapsedTimer waited;
    waited.start();
    while (!m_output.contains(text) && !waited.hasExpired(EndMsecs)) {
        m_process.waitForReadyRead(100);
        m_output += QString::fromUtf8(m_process.readAllStandardOutput());
    }
    return m_output.contains(text);
}

void ControlProgram::interrupt() {
    ::kill(pid_t(m_process.processId()), SIGINT);
}

Ended ControlProgram::end() {
    m_process.waitForFinished(EndMsecs);
    m_output += QString::fromUtf8(m_process.readAllStandardOutput());
    Ended ended;
    if (m_process.state() == QProcess::NotRunning && m_process.exitStatus() == QProcess::NormalExit)
        ended.status = m_process.exitCode();
    ended.output = m_output;
    ended.errors = QString::fromUtf8(m_process.readAllStandardError());
    return ended;
}

TerminalProgram::TerminalProgram(const QStringList& arguments) {
    int theirs = -1;
    char path[128];
    EXPECT_EQ(openpty(&m_terminal, &theirs, path, nullptr, nullptr), 0);
    m_process.setStandardOutputFile(QString::fromLocal8Bit(path));
    m_process.start(QStringLiteral(DMC50CTL), arguments);
    EXPECT_TRUE(m_process.waitForStarted(EndMsecs));
    ::close(theirs);
}

TerminalProgram::~TerminalProgram() {
    m_process.kill();
    m_process.waitForFinished(EndMsecs);
    ::close(m_terminal);
}

bool TerminalProgram::awaitOutput(const QByteArray& text) {
    QElapsedTimer waited;
    waited.start();
    while (!m_output.contains(text)) {
        pollfd readable = {m_terminal, POLLIN, 0};
        char buffer[4096];
        const auto count =
            ::poll(&readable, 1, int(qMax<qint64>(0, EndMsecs - waited.elapsed()))) > 0
                ? ::read(m_terminal, buffer, sizeof buffer)
                : 0;
        if (count <= 0)
            return false;
        m_output.append(buffer, int(count));
    }
    m_output.remove(0, m_output.indexOf(text) + text.size());
    return true;
}

Ended control(const QStringList& arguments) {
    return ControlProgram(arguments).end();
}

QStringList onSample(const QString& port, const QStringList& command) {
    return QStringList{QStringLiteral("--project"), QStringLiteral(SAMPLE_PROJECT),
                       QStringLiteral("--port"), port} +
           command;
}
