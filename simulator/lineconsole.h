#ifndef SIMULATOR_LINECONSOLE_H
#define SIMULATOR_LINECONSOLE_H

#include <QString>

namespace simulator {

class Line;

/** Commands that a person or a script gives a running line, one per text line:
 *
 *      station 2 silent            station 2 no longer answers
 *      station 2 end-code:value=9  any fault, as on the command line
 *      station 2 ok                no fault from here; those of a script go on
 *      dump 1 0x1000 24            shows double words
 *      set 1 0x1000 850            changes one
 *      counters                    shows what has happened on the line
 *      help, quit
 */
class LineConsole {
public:
    explicit LineConsole(Line& line);

    /** Carries out one command and returns what to show, without a last line
     *  end; empty for an empty command. */
    QString execute(const QString& command);

    /** True once "quit" was given. */
    bool wantsToQuit() const { return m_quit; }

private:
    QString station(const QStringList& words);
    QString dump(const QStringList& words);
    QString set(const QStringList& words);
    QString counters() const;
    QString quit();

    Line& m_line;
    bool m_quit = false;
};

} // namespace simulator

#endif
