#ifndef TESTS_UNIT_PANEL_MODALOPERATOR_H
#define TESTS_UNIT_PANEL_MODALOPERATOR_H

#include <QList>
#include <QMessageBox>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>

class QFileDialog;

/** An operator in front of the screen: while events run, answers each modal
 *  message box or file dialog as told beforehand, in that order, and notes what
 *  it showed. A dialog that nobody was told of fails the test. */
class ModalOperator : public QObject {
    Q_OBJECT
public:
    /** What a dialog showed. */
    struct Seen {
        QString title;
        QString text;
        QString informative_text;
        QMessageBox::StandardButtons buttons;
        bool cancel_is_default;
        QWidget* parent;
        QString directory; // of a file dialog, as its filters
        QStringList filters;
    };

    ModalOperator();
    ~ModalOperator();

    void willPress(QMessageBox::StandardButton button);
    void willPick(const QString& file_name); // empty: cancel

    /** All dialogs so far. */
    QList<Seen> seen;

private slots:
    void look();

private:
    struct Answer {
        QMessageBox::StandardButton button;
        QString file_name;
    };

    void answer(QMessageBox* box, const Answer& answer);
    void answer(QFileDialog* dialog, const Answer& answer);

    QTimer m_look;
    QList<Answer> m_answers;
};

#endif
