#include "tests/support/scriptedport.h"

#include <algorithm>
#include <cstring>

ScriptedPort::ScriptedPort(Clock* clock)
    : m_setting(DEVICE_RS485, QString::fromLatin1("COM2"), 38400, 8, 0, 2), m_clock(clock) {}

int ScriptedPort::readBytes(char* buffer, int max) {
    {
        QMutexLocker lock(&m_mutex);
        int count = std::min(max, int(m_received.size()));
        if (m_chunk > 0)
            count = std::min(count, m_chunk);
        std::memcpy(buffer, m_received.constData(), std::size_t(count));
        m_received.remove(0, count);
        if (count > 0)
            return count;
    }
    if (m_clock)
        m_clock->sleepMsecs(quint32(m_timeout));
    return 0;
}

int ScriptedPort::writeBytes(const char* buffer, int length) {
    QMutexLocker lock(&m_mutex);
    const QByteArray request(buffer, length);
    m_calls.append(request);
    const Answer answer = m_answer;
    lock.unlock();
    receive(answer ? answer(request) : QByteArray());
    return length;
}

void ScriptedPort::control(int code, QVariant argument) {
    QMutexLocker lock(&m_mutex);
    m_calls.append("control " + QByteArray::number(code) + " " + argument.toByteArray());
    m_received.clear();
}

QList<QByteArray> ScriptedPort::calls() const {
    QMutexLocker lock(&m_mutex);
    return m_calls;
}

QList<QByteArray> ScriptedPort::requests() const {
    QList<QByteArray> requests;
    const QList<QByteArray> all = calls();
    for (int i = 0; i < all.size(); ++i) {
        if (!all.at(i).startsWith("control"))
            requests.append(all.at(i));
    }
    return requests;
}

void ScriptedPort::forgetCalls() {
    QMutexLocker lock(&m_mutex);
    m_calls.clear();
}

void ScriptedPort::receive(const QByteArray& bytes) {
    QMutexLocker lock(&m_mutex);
    m_received += bytes;
}

void ScriptedPort::setAnswer(const Answer& answer) {
    QMutexLocker lock(&m_mutex);
    m_answer = answer;
}
