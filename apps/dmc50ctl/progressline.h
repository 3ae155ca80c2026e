#ifndef APPS_DMC50CTL_PROGRESSLINE_H
#define APPS_DMC50CTL_PROGRESSLINE_H

#include <QString>

/** How far something has come, on the standard output: a bar that grows on a
 *  terminal, elsewhere a line now and then. */
class ProgressLine {
public:
    /** A @p silent one shows nothing. */
    explicit ProgressLine(bool silent);

    /** @p text says what is done. */
    void show(const QString& text, int percent);

    /** Wipes the bar out. */
    void clear();

private:
    const bool m_silent;
    const bool m_terminal;
    QString m_text;   // of the last line
    int m_shown = -1; // percent of the last line; -1: none
};

#endif
