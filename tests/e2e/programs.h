#ifndef TESTS_E2E_PROGRAMS_H
#define TESTS_E2E_PROGRAMS_H

#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

/** How a program ended. */
struct Ended {
    int status = -1; // exit status; -1: killed, or never ended
    QString output;
    QString errors;
};

/** A dmc50sim, from its start until it is destroyed. */
class SimulatedLine {
public:
    /** On a pty whose path is port(), unless @p arguments say --tcp; at a link of its
     *  own, unless they say --link. */
    explicit SimulatedLine(const QStringList& arguments = {});
    ~SimulatedLine();

    QString port() const { return m_port; }

    /** A line for its standard input, such as "station 2 silent". */
    void command(const QByteArray& line);

    /** The value of one double word. */
    quint32 memory(int station, quint32 address);

    void kill();

private:
    QString readLine();

    QTemporaryDir m_directory;
    QProcess m_process;
    QString m_port;
};

/** A running dmc50ctl. */
class ControlProgram {
public:
    explicit ControlProgram(const QStringList& arguments);
    ~ControlProgram();

    /** Waits until the standard output holds @p text; false after 60 s. */
    bool awaitOutput(const QString& text);

    /** Gives it @p msecs; true when it has ended. */
    bool hasEndedWithin(int msecs) { return m_process.waitForFinished(msecs); }

    /** Ctrl-C. */
    void interrupt();

    /** Waits until it has ended, at most 60 s. */
    Ended end();

private:
    QProcess m_process;
    QString m_output;
};

/** A running dmc50ctl whose standard output is a terminal. */
class TerminalProgram {
public:
    explicit TerminalProgram(const QStringList& arguments);
    TerminalProgram(const TerminalProgram&) = delete;
    TerminalProgram& operator=(const TerminalProgram&) = delete;
    ~TerminalProgram();

    /** Waits until the standard output has shown @p text since the last such wait;
     *  false after 60 s. */
    bool awaitOutput(const QByteArray& text);

    QByteArray output() const { return m_output; }

private:
    QProcess m_process;
    int m_terminal = -1; // our end
    QByteArray m_output; // since the last wait
};

/** Runs dmc50ctl to its end. */
Ended control(const QStringList& arguments);

/** The sample project on @p port, before a command. */
QStringList onSample(const QString& port, const QStringList& command);

#endif
