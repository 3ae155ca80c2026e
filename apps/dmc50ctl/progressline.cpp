#include "apps/dmc50ctl/progressline.h"

#include "apps/dmc50ctl/valuetable.h"

#include <cstdio>
#include <unistd.h>

namespace {

constexpr int BAR_WIDTH = 40;  // characters
constexpr int PLAIN_STEP = 25; // percent from one line to the next
const char WIPE_LINE[] = "\r\x1b[K";

} // namespace

ProgressLine::ProgressLine(const QString& text, bool silent)
    : m_text(text), m_silent(silent), m_terminal(isatty(STDOUT_FILENO) == 1) {}

ProgressLine::~ProgressLine() {
    if (m_terminal && m_shown >= 0) {
        std::fputs(WIPE_LINE, stdout);
        std::fflush(stdout);
    }
}

void ProgressLine::show(int percent) {
    if (m_silent)
        return;
    if (m_terminal) {
        const int full = BAR_WIDTH * percent / 100;
        const QString bar = QString(full, QLatin1Char('#')).leftJustified(BAR_WIDTH);
        const QString line = QString::fromLatin1("%1 [%2] %3 %").arg(m_text, bar).arg(percent, 3);
        std::printf("\r%s", line.toUtf8().constData());
        std::fflush(stdout);
        m_shown = percent;
    } else if (m_shown < 0 || percent / PLAIN_STEP > m_shown / PLAIN_STEP) {
        printLine(QString::fromLatin1("%1: %2 %").arg(m_text).arg(percent));
        m_shown = percent;
    }
}
