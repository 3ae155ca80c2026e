#ifndef APPS_DMC50CTL_PROGRESSLINE_H
#define APPS_DMC50CTL_PROGRESSLINE_H

#include <QString>

/** How far something has come, on the standard output: a bar that grows on a
 *  terminal, elsewhere a line now and then. */
class ProgressLine {
public:
    /** @p text says what is done. A @p silent one shows nothing. */
    ProgressLine(const QString& text, bool silent);

    /** Wipes the bar out. */
    ~ProgressLine();

    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    void show(int percent);

private:
    const QString m_text;
    const bool m_silent;
    const bool m_terminal;
    int m_shown = -1; // percent of the last line
};

#endif
