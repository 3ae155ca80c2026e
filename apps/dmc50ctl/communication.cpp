#include "apps/dmc50ctl/communication.h"

#include "apps/dmc50ctl/recipecommands.h"
#include "runtime/panel/kdevice.h"
#include "trace/frametrace.h"

#include <QCoreApplication>
#include <QFile>
#include <QSocketNotifier>
#include <QThread>
#include <QTimer>

#include <csignal>
#include <mutex>
#include <sys/signalfd.h>
#include <unistd.h>

using namespace host;

namespace {

constexpr int PatienceMsecs = 700; // of a second; the rest is for the program's end

/** The session as both threads see it. */
class Interruptible {
public:
    /** The communication thread's session from now on; null takes it away. */
    void setSession(PanelSession* session) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_session = session;
        if (m_session && m_interrupted)
            m_session->cancel();
    }

    void interrupt() {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_interrupted = true;
        if (m_session)
            m_session->cancel();
    }

    const std::atomic<bool>& interrupted() const { return m_interrupted; }

private:
    std::mutex m_mutex; // guards m_session
    PanelSession* m_session = nullptr;
    std::atomic<bool> m_interrupted{false};
};

/** Receives SIGINT and SIGTERM on a descriptor. Made before any thread, since
 *  threads inherit that the signals are blocked. */
class EndSignals {
public:
    EndSignals() {
        sigset_t ending;
        sigemptyset(&ending);
        sigaddset(&ending, SIGINT);
        sigaddset(&ending, SIGTERM);
        pthread_sigmask(SIG_BLOCK, &ending, nullptr);
        m_descriptor = signalfd(-1, &ending, SFD_CLOEXEC | SFD_NONBLOCK);
    }
    EndSignals(const EndSignals&) = delete;
    EndSignals& operator=(const EndSignals&) = delete;
    ~EndSignals() { ::close(m_descriptor); }

    int descriptor() const { return m_descriptor; }

private:
    int m_descriptor;
};

/** One command and the two threads that it takes. */
class Communication {
public:
    Communication(const Target& target, const Options& options, DriverPlugin& plugin)
        : m_target(target), m_options(options), m_plugin(plugin) {}

    /** Reads the values to write and opens the trace. After a message, the exit
     *  status; else ExitOk. */
    int prepare();

    int run(const std::function<void()>& clean_up);

private:
    void work(const PanelSetup& setup);
    int runCommand(PanelSession& session);
    void tellInterruption() const;
    int exitStatus(int status) const;

    const Target& m_target;
    const Options& m_options;
    DriverPlugin& m_plugin;
    QVector<QByteArray> m_values;
    QFile m_trace_file;
    std::unique_ptr<PanelOperator> m_panel; // of a transfer
    Interruptible m_shared;
    int m_status = ExitCommunication; // the communication thread's until it has ended
};

int Communication::prepare() {
    const auto values = parseValues(m_target);
    if (!values) {
        for (const QString& error : values.error())
            printError(error);
        return ExitUsage;
    }
    m_values = *values;
    if (m_options.trace_file.isEmpty())
        return ExitOk;
    m_trace_file.setFileName(m_options.trace_file);
    if (m_trace_file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return ExitOk;
    printError(QString::fromLatin1("%1: %2").arg(m_options.trace_file, m_trace_file.errorString()));
    return ExitCommunication;
}

/** Here, since the command may have to be left behind without a word. */
void Communication::tellInterruption() const {
    if (m_options.command == Options::Command::RecipePush)
        printError(QStringLiteral("interrupted; the controller may hold a part of the programs"));
    else if (m_options.isTransfer())
        printError(QStringLiteral("interrupted"));
}

int Communication::exitStatus(int status) const {
    if (!m_shared.interrupted())
        return status;
    return m_options.command == Options::Command::Watch ? ExitOk : ExitInterrupted;
}

int Communication::runCommand(PanelSession& session) {
    switch (m_options.command) {
    case Options::Command::Write:
        return runWrite(session, m_target, m_values, m_options);
    case Options::Command::Watch:
        return runWatch(session, m_target, m_options, m_shared.interrupted());
    case Options::Command::RecipePull:
    case Options::Command::RecipePush:
    case Options::Command::RecipeTemplate:
        return runRecipe(session, m_target, *m_panel, m_options, m_shared.interrupted());
    default:
        return runRead(session, m_target, m_options);
    }
}

/** The communication thread, from the first opening of a port to the end of the
 *  last driver. */
void Communication::work(const PanelSetup& setup) {
    const auto session = PanelSession::open(m_target.project, m_target.linkIds(), m_plugin, setup);
    if (!session) {
        printError(session.error());
        return;
    }
    m_shared.setSession(session->get());
    m_status = runCommand(**session);
    m_shared.setSession(nullptr);
}

int Communication::run(const std::function<void()>& clean_up) {
    trace::FrameTrace frame_trace(&m_trace_file, [this](const QString& error) {
        printError(QString::fromLatin1("%1: %2; what cannot be written is lost")
                       .arg(m_options.trace_file, error));
    });
    PanelSetup setup;
    setup.log = printError;
    setup.frame_trace = m_trace_file.isOpen() ? &frame_trace : nullptr;

    const EndSignals end_signals;
    if (m_options.isTransfer()) {
        KDevice::getInstance(); // as in the panel, before other threads are at work
        m_panel = std::make_unique<PanelOperator>();
    }
    QSocketNotifier notifier(end_signals.descriptor(), QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, qApp, [&] {
        notifier.setEnabled(false);
        m_shared.interrupt();
        tellInterruption();
        QTimer::singleShot(PatienceMsecs, qApp, [&] {
            clean_up();
            std::fflush(stdout);
            std::_Exit(exitStatus(ExitInterrupted));
        });
    });
    const std::unique_ptr<QThread> communication(QThread::create([&] { work(setup); }));
    QObject::connect(communication.get(), &QThread::finished, qApp, &QCoreApplication::quit);
    communication->start();
    QCoreApplication::exec();
    communication->wait();
    return exitStatus(m_status);
}

} // namespace

int communicate(const Target& target, const Options& options, DriverPlugin& plugin,
                const std::function<void()>& clean_up) {
    Communication communication(target, options, plugin);
    const int status = communication.prepare();
    return status == ExitOk ? communication.run(clean_up) : status;
}
