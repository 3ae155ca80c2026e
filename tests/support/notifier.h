#ifndef TESTS_SUPPORT_NOTIFIER_H
#define TESTS_SUPPORT_NOTIFIER_H

#include <QObject>
#include <QString>

/** An object with something to tell the message panel. */
class Notifier : public QObject {
    Q_OBJECT
public:
    /** Connects to @p panel, a MessageCenter, in the way @p type says. */
    explicit Notifier(const QObject& panel, Qt::ConnectionType type = Qt::AutoConnection);

    void tell(const char* title, const char* text, bool show_instant = false);
    void tell(const QString& title, const QString& text, bool show_instant = false);
    void takeBack();

signals:
    void notice(QString title, QString text, bool show_instant);
    void takenBack();
};

#endif
