#include "apps/dmc50sim/control.h"

#include <array>
#include <csignal>
#include <cstdio>
#include <poll.h>
#include <pthread.h>
#include <sys/signalfd.h>
#include <unistd.h>

namespace {

/** Shows what the complete lines in @p input give and takes them away. */
void executeLines(simulator::LineConsole& console, QByteArray& input) {
    for (int end = input.indexOf('\n'); end >= 0 && !console.wantsToQuit();
         end = input.indexOf('\n')) {
        const QString shown = console.execute(QString::fromLocal8Bit(input.left(end)));
        input.remove(0, end + 1);
        if (!shown.isEmpty())
            std::puts(qPrintable(shown));
        std::fflush(stdout);
    }
}

/** Appends what the standard input has. False at its end. */
bool readInput(QByteArray& input) {
    std::array<char, 4096> bytes = {};
    const ssize_t count = ::read(STDIN_FILENO, bytes.data(), bytes.size());
    if (count > 0)
        input.append(bytes.data(), int(count));
    return count > 0;
}

} // namespace

EndSignals::EndSignals() {
    sigset_t end_signals;
    sigemptyset(&end_signals);
    sigaddset(&end_signals, SIGINT);
    sigaddset(&end_signals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &end_signals, nullptr);
    m_descriptor = signalfd(-1, &end_signals, SFD_CLOEXEC);
    std::signal(SIGPIPE, SIG_IGN); // a client or a log reader that goes is no reason to end
    std::signal(SIGTTIN, SIG_IGN); // in the background there is no input
}

EndSignals::~EndSignals() {
    ::close(m_descriptor);
}

void controlLine(simulator::LineConsole& console, const EndSignals& end_signals) {
    std::array<pollfd, 2> files = {
        {{end_signals.descriptor(), POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}}};
    QByteArray input;
    while (!console.wantsToQuit()) {
        if (::poll(files.data(), files.size(), -1) < 0)
            continue;
        if (files[0].revents != 0)
            return;
        if (files[1].revents != 0 && !readInput(input))
            files[1].fd = -1; // poll() passes over it
        executeLines(console, input);
    }
}
