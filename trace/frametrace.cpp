#include "trace/frametrace.h"

#include "trace/escapedtext.h"

#include <QFileDevice>

#include <ctime>
#include <utility>

namespace trace {

namespace {

QByteArray milliseconds(qint64 microseconds) {
    return QByteArray::number(double(microseconds) / 1000.0, 'f', 3);
}

} // namespace

qint64 monotonicMicroseconds() {
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return qint64(now.tv_sec) * 1000000 + now.tv_nsec / 1000;
}

QByteArray traceLine(qint64 time, qint64 gap, const TraceEntry& entry) {
    const QByteArray columns[] = {
        milliseconds(time).rightJustified(14),
        entry.direction == Direction::Request ? "->" : "<-",
        gap < 0 ? QByteArray("-") : "+" + milliseconds(gap),
        escapedText(entry.bytes),
        entry.fields,
        describeChecksum(entry.bytes),
    };
    QByteArray line;
    for (const QByteArray& column : columns)
        line += line.isEmpty() ? column : "\t" + column;
    return line;
}

FrameTrace::FrameTrace(QIODevice* device, Complaint complaint)
    : m_device(device), m_complaint(std::move(complaint)) {}

bool FrameTrace::record(Direction direction, const QByteArray& bytes) {
    return record(direction, bytes, monotonicMicroseconds());
}

bool FrameTrace::record(Direction direction, const QByteArray& bytes, qint64 time,
                        const QByteArray& note) {
    return recordLine({direction, bytes, describeFrame(direction, bytes) + note}, time);
}

bool FrameTrace::recordWithheld(const QByteArray& bytes, qint64 time) {
    return recordLine(
        {Direction::Request, QByteArray(), describeFrame(Direction::Request, bytes) + " withheld"},
        time);
}

bool FrameTrace::recordLine(const TraceEntry& entry, qint64 time) {
    std::lock_guard<std::mutex> lock(m_mutex);
    const qint64 gap = m_last_time < 0 ? -1 : time - m_last_time;
    m_last_time = time;
    if (write(traceLine(time, gap, entry) + '\n'))
        return true;
    if (const Complaint complaint = std::exchange(m_complaint, Complaint()))
        complaint(m_device->errorString());
    return false;
}

bool FrameTrace::write(const QByteArray& line) {
    if (m_device->write(line) != line.size())
        return false;
    // A trace is read while it grows, and after a crash.
    auto* file = qobject_cast<QFileDevice*>(m_device);
    return !file || file->flush();
}

} // namespace trace
