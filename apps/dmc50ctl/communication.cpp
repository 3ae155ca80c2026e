#include "apps/dmc50ctl/communication.h"

#include "apps/dmc50ctl/accesscommands.h"
#include "apps/dmc50ctl/infocommand.h"
#include "apps/dmc50ctl/interruption.h"
#include "apps/dmc50ctl/recipecommands.h"
#include "apps/dmc50ctl/watchcommand.h"
#include "runtime/panel/kdevice.h"
#include "trace/frametrace.h"

#include <QCoreApplication>
#include <QFile>
#include <QSocketNotifier>
#include <QThread>
#include <QTimer>

#include <csignal>
#include <sys/signalfd.h>
#include <unistd.h>

using namespace host;

namespace {

constexpr int PatienceMsecs = 700; // of a second; the rest is for the program's end

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
    Interruption m_interruption;
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
    if (!m_interruption.interrupted())
        return status;
    return m_options.command == Options::Command::Watch ? ExitOk : ExitInterrupted;
}

int Communication::runCommand(PanelSession& session) {
    switch (m_options.command) {
    case Options::Command::Write:
        return runWrite(session, m_target, m_values, m_options);
    case Options::Command::Watch:
        return runWatch(session, m_target, m_options, m_interruption);
    case Options::Command::RecipePull:
    case Options::Command::RecipePush:
    case Options::Command::RecipeTemplate:
        return runRecipe(session, m_target, *m_panel, m_options, m_interruption.interrupted());
    default:
        return runRead(session, m_target, m_options);
    }
}

/** The communication thread, from the first opening of a port to the end of the
 *  last driver. */
void Communication::work(const PanelSetup& setup) {
    if (m_options.command == Options::Command::Info) {
        m_status = runInfo(m_plugin, m_target, m_options, setup, m_interruption);
        return;
    }
    const auto session = PanelSession::open(m_target.project, m_target.linkIds(), m_plugin, setup);
    if (!session) {
        printError(session.error());
        return;
    }
    m_interruption.setEnding([&session] { (*session)->cancel(); });
    m_status = runCommand(**session);
    m_interruption.setEnding(nullptr);
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
        m_interruption.interrupt();
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
