#ifndef TESTS_UNIT_DMC50V3_TRANSFER_NOTICELOG_H
#define TESTS_UNIT_DMC50V3_TRANSFER_NOTICELOG_H

#include <QMutex>
#include <QObject>
#include <QStringList>

/** Keeps the notices that an exporter shows, as "title|text|instant". Any thread. */
class NoticeLog : public QObject {
    Q_OBJECT
public:
    QStringList notices() const {
        QMutexLocker lock(&m_mutex);
        return m_notices;
    }

public slots:
    void keep(QString title, QString text, bool instant) {
        QMutexLocker lock(&m_mutex);
        m_notices.append(title + QLatin1Char('|') + text + QLatin1Char('|') +
                         QLatin1String(instant ? "1" : "0"));
    }

private:
    mutable QMutex m_mutex; // guards the list
    QStringList m_notices;
};

#endif
