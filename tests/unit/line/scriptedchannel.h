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
    Result<void> open() override {
        if (++attempts <= failing_attempts)
            return Failure(QStringLiteral("no such device"));
        return {};
    }
    void close() override { ++closings; }

    Result<int> read(char* buffer, int max, int timeout_ms) override {
        read_timeouts.append(timeout_ms);
        if (pieces.isEmpty())
            return 0;
        const QByteArray piece = pieces.takeFirst();
        if (piece.isNull())
            return Failure(QStringLiteral("it hung up"));
        const int count = qMin(max, piece.size());
        memcpy(buffer, piece.constData(), size_t(count));
        return count;
    }
    Result<void> write(const char* buffer, int length, int) override {
        sent.append(QByteArray(buffer, length));
        if (refuses_writes)
            return Failure(QStringLiteral("it hung up"));
        return {};
    }
    QByteArray discard() override {
        ++discards;
        return stale;
    }
    void cancel() override { m_cancelled = true; }
    bool isCancelled() const override { return m_cancelled; }
    QString name() const override { return QStringLiteral("/dev/script"); }

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
};

#endif
