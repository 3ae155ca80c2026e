#ifndef TESTS_SUPPORT_SCRIPTEDPORT_H
#define TESTS_SUPPORT_SCRIPTEDPORT_H

#include "runtime/base/clock.h"
#include "runtime/interfaces/abstractdeviceinterface.h"

#include <QList>
#include <QMutex>

#include <functional>

/** A port in memory: keeps every request and answers with what a function makes
 *  of it. An empty answer is silence: the read then takes the response timeout
 *  on the given clock. Configure it before a thread uses it. */
class ScriptedPort : public AbstractDeviceInterface {
public:
    typedef std::function<QByteArray(const QByteArray& request)> Answer;

    explicit ScriptedPort(Clock* clock = nullptr);

    int readBytes(char* buffer, int max) override;
    int writeBytes(const char* buffer, int length) override;
    const DeviceSetting* deviceSetting() override { return &m_setting; }
    void control(int code, QVariant argument) override;
    int responseTimeout() override { return m_timeout; }
    unsigned retryCount() override { return m_retries; }
    int stationId() override { return m_station; }
    unsigned frameInterval() override { return m_frame_interval; }

    /** What happened, oldest first: a request's bytes, or "control 12 0". */
    QList<QByteArray> calls() const;
    /** The requests alone. */
    QList<QByteArray> requests() const;
    void forgetCalls();

    void setAnswer(const Answer& answer);

    /** Bytes arrive that no request has asked for now, such as a late reply. */
    void receive(const QByteArray& bytes);

    /** Bytes that one read returns at most; 0: no limit. */
    int m_chunk = 0;
    int m_timeout = 3000;
    unsigned m_retries = 0;
    int m_station = 1;
    unsigned m_frame_interval = 10;
    DeviceSetting m_setting;

private:
    Clock* const m_clock; // the test's; null: silence takes no time

    mutable QMutex m_mutex; // guards all below
    Answer m_answer;
    QByteArray m_received;
    QList<QByteArray> m_calls;
};

#endif
