#include "apps/dmc50demo/screen.h"

#include <cstdio>
#include <cstdlib>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

/** Lines of a terminal that the table leaves: its head, and two for the step. */
constexpr int OtherLines = 5;

const char ClearToEnd[] = "\x1b[J";
const char ClearRestOfLine[] = "\x1b[K";

bool isTerminal() {
    const char* const kind = std::getenv("TERM");
    return isatty(STDOUT_FILENO) == 1 && kind && qstrcmp(kind, "dumb") != 0;
}

void put(const QString& text) {
    std::fputs(text.toUtf8().constData(), stdout);
}

void putLine(const QString& text) {
    put(text + QLatin1Char('\n'));
}

} // namespace

Screen::Screen() : m_terminal(isTerminal()) {
    if (!m_terminal)
        return;
    winsize size = {};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 && size.ws_row > 0) {
        m_width = size.ws_col;
        m_height = size.ws_row;
    }
    if (!std::getenv("NO_COLOR"))
        m_palette = {"\x1b[0m", "\x1b[1m", "\x1b[2m", "\x1b[32m", "\x1b[31m", "\x1b[36m"};
}

int Screen::rowsForTable() const {
    return m_height - OtherLines;
}

/** Takes away what was drawn not to stay. */
void Screen::wipe() {
    if (m_drawn > 0)
        put(QString::fromLatin1("\x1b[%1A%2").arg(m_drawn).arg(QLatin1String(ClearToEnd)));
    m_drawn = 0;
}

void Screen::say(const char* colour, const QString& mark, const QString& text) {
    wipe();
    putLine(QLatin1String(colour) + mark + QLatin1String(m_palette.plain) + QLatin1Char(' ') +
            text);
    std::fflush(stdout);
}

void Screen::begin(const QString& text) {
    say(m_palette.bold, QStringLiteral(">>"), text);
}

void Screen::done(const QString& text) {
    say(m_palette.good, QStringLiteral("ok"), text);
}

void Screen::failed(const QString& text) {
    say(m_palette.bad, QStringLiteral("FAILED"), text);
}

void Screen::draw(const QVector<TagRow>& rows) {
    if (m_drawn > 0)
        put(QString::fromLatin1("\x1b[%1A").arg(m_drawn));
    const QStringList lines = tableLines(rows, m_width, m_palette);
    for (const QString& line : lines)
        putLine(m_terminal ? line + QLatin1String(ClearRestOfLine) : line);
    m_drawn = lines.size();
    std::fflush(stdout);
}

void Screen::refresh(const QVector<TagRow>& rows) {
    if (m_terminal)
        draw(rows);
}

void Screen::keep(const QVector<TagRow>& rows) {
    draw(rows);
    m_drawn = 0;
}

void Screen::progress(const char* what, int percent) {
    if (!m_terminal)
        return;
    if (m_drawn > 0)
        put(QString::fromLatin1("\x1b[%1A").arg(m_drawn));
    putLine(QString::fromLatin1("   %1 %2 %%3")
                .arg(QLatin1String(what))
                .arg(percent)
                .arg(QLatin1String(ClearRestOfLine)));
    m_drawn = 1;
    std::fflush(stdout);
}

void Screen::print(const QStringList& lines) {
    wipe();
    for (const QString& line : lines)
        putLine(line);
    std::fflush(stdout);
}
