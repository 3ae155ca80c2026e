#include "apps/dmc50ctl/progressline.h"

#include "apps/dmc50ctl/valuetable.h"

#include <cstdio>
#include <unistd.h>

namespace {

constexpr int BarWidth = 40;  // characters
constexpr int PlainStep = 25; // percent from one line to the next
const char WipeLine[] = "\r\x1b[K";

} // namespace

ProgressLine::ProgressLine(bool silent)
    : m_silent(silent), m_terminal(isatty(STDOUT_FILENO) == 1) {}

void ProgressLine::clear() {
    if (m_terminal && m_shown >= 0) {
        std::fputs(WipeLine, stdout);
        std::fflush(stdout);
    }
    m_shown = -1;
}

void ProgressLine::show(const QString& text, int percent) {
    if (m_silent)
        return;
    if (text != m_text)
        clear();
    m_text = text;
    if (m_terminal) {
        const QString bar = QString(BarWidth * percent / 100, QLatin1Char('#'));
        const QString line = QString::fromLatin1("%1 [%2] %3 %")
                                 .arg(text, bar.leftJustified(BarWidth))
                                 .arg(percent, 3);
        std::printf("\r%s", line.toUtf8().constData());
        std::fflush(stdout);
        m_shown = percent;
    } else if (m_shown < 0 || percent / PlainStep > m_shown / PlainStep) {
        printLine(QString::fromLatin1("%1: %2 %").arg(text).arg(percent));
        m_shown = percent;
    }
}
