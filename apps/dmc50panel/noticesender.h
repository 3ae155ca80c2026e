#ifndef APPS_DMC50PANEL_NOTICESENDER_H
#define APPS_DMC50PANEL_NOTICESENDER_H

#include <QObject>
#include <QStringList>

class QTimer;

/** Something that works in the background and tells how far it is. Thread: the
 *  one it was moved to; only its signals leave it. */
class NoticeSender : public QObject {
    Q_OBJECT

public:
    /** Tells @p texts one by one, @p period_msecs apart, again and again. */
    NoticeSender(const QString& title, const QStringList& texts, int period_msecs);

public slots:
    void start();
    void stop();

signals:
    void notice(QString title, QString text, bool show_instant);
    void toldFirst();

private:
    void tellNext();

    const QString m_title;
    const QStringList m_texts;
    QTimer* const m_timer; // child
    int m_next = 0;
};

#endif
