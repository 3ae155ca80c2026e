#ifndef TESTS_SUPPORT_DIALOGDRIVER_H
#define TESTS_SUPPORT_DIALOGDRIVER_H

#include <QStringList>
#include <QTimer>

#include <atomic>
#include <functional>

class QDialog;

/** An operator at the file choice dialog: while it lives, and the GUI thread runs
 *  its events, it answers every modal dialog with real mouse and window events. */
class DialogDriver : public QObject {
    Q_OBJECT
public:
    enum Way { PressOk, CloseWindow };

    /** @p row is clicked first, unless it is -1. */
    explicit DialogDriver(Way way, int row = -1);

    /** Runs the GUI thread's events until finish() is called. */
    void exec();

    /** Ends exec(); any thread. */
    void finish();

    /** Called when a dialog is open, before it is answered. */
    std::function<void()> m_before_answer;

    /** The files that the last dialog listed. */
    QStringList offered() const { return m_offered; }
    int dialogsSeen() const { return m_dialogs_seen; }

private slots:
    void look();

private:
    void answer(QDialog* dialog);

    const Way m_way;
    const int m_row;
    QTimer m_look;
    QStringList m_offered;
    int m_dialogs_seen;
    std::atomic<bool> m_finished;
};

#endif
