#ifndef TESTS_UNIT_LINE_SCRIPTEDCHANNEL_H
#define TESTS_UNIT_LINE_SCRIPTEDCHANNEL_H

#include "host/line/bytechannel.h"

#include <QList>

#include <atomic>
#include <cstring>

/** A channel that plays a list of received pieces and remembers what it was
 *  asked. A piece that is empty is one wait in vain; a null one loses the line. */
class ScriptedChannel : public host::ByteChannel {
public:
    bool open() override {
        ++attempts;
        m_error = QStringLiteral("no such device");
        return attempts > failing_attempts;
    }
    void close() override { ++closings; }

    int read(char* buffer, int max, int timeout_ms) override {
        read_timeouts.append(timeout_ms);
        if (pieces.isEmpty())
            return 0;
        const QByteArray piece = pieces.takeFirst();
        m_error = QStringLiteral("it hung up");
        if (piece.isNull())
            return -1;
        const int count = qMin(max, piece.size());
        memcpy(buffer, piece.constData(), size_t(count));
        return count;
    }
    bool write(const char* buffer, int length, int) override {
        sent.append(QByteArray(buffer, length));
        return !refuses_writes;
    }
    QByteArray discard() override {
        ++discards;
        return stale;
    }
    void cancel() override { m_cancelled = true; }
    bool isCancelled() const override { return m_cancelled; }
    QString name() const override { return QStringLiteral("/dev/script"); }
    QString lastError() const override { return m_error; }

    int failing_attempts = 0;
    bool refuses_writes = false;
    QList<QByteArray> pieces;
    QByteArray stale;

    int attempts = 0;
    int closings = 0;
    int discards = 0;
    QList<int> read_timeouts;
    QList<QByteArray> sent;

private:
    std::atomic<bool> m_cancelled{false};
    QString m_error;
};

#endif
