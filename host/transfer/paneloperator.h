#ifndef HOST_TRANSFER_PANELOPERATOR_H
#define HOST_TRANSFER_PANELOPERATOR_H

#include <QMutex>
#include <QObject>
#include <QStringList>

#include <memory>

class MessageCenter;

namespace host {

/** Stands in for the person at the panel while programs are transferred: reads
 *  the notices of the message panel, and answers when the driver asks which of
 *  several files to take. Nothing shows on the screen.
 *
 *  Made before the driver's first transfer, which looks for the message panel
 *  once. Thread: made and destroyed on the GUI thread, whose event loop must run;
 *  the rest any. */
class PanelOperator : public QObject {
    Q_OBJECT
public:
    PanelOperator();
    ~PanelOperator() override;

    /** The file, by its name without folder, to choose when the driver asks. Any
     *  other choice is answered by none at all, which the driver refuses. */
    void chooseFile(const QString& name);

    /** All notices since the last call, without their titles. Those that were sent
     *  before it are among them. */
    QStringList takeNotices();

    bool eventFilter(QObject* watched, QEvent* event) override;

public slots:
    /** Reads what the message panel shows. */
    void readNotices();

private slots:
    void answerDialog();

private:
    const std::unique_ptr<MessageCenter> m_panel;
    QMutex m_mutex;        // guards the two below
    QString m_chosen_file; // empty: none
    QStringList m_notices;
};

} // namespace host

#endif
