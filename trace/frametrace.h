#ifndef TRACE_FRAMETRACE_H
#define TRACE_FRAMETRACE_H

#include "trace/framedecode.h"

#include <QString>

#include <functional>
#include <mutex>

class QIODevice;

namespace trace {

/** Microseconds of CLOCK_MONOTONIC: the same for every program of a machine, so
 *  that the traces of both ends of a line can be sorted into one. */
qint64 monotonicMicroseconds();

/** What a line of a trace tells besides the times. */
struct TraceEntry {
    Direction direction;
    QByteArray bytes;  // empty: nothing went over the line
    QByteArray fields; // as describeFrame()
};

/** One line of a trace, without the line end: time, direction, gap, bytes,
 *  fields and checksum, separated by tabs. Times are in microseconds;
 *  @p gap below 0 stands for "no frame before this one". */
QByteArray traceLine(qint64 time, qint64 gap, const TraceEntry& entry);

/** Writes one line per frame to a device. Any thread may record; the device
 *  must be open for writing, outlive the trace and be used by nobody else. */
class FrameTrace {
public:
    /** Hears the device's error. */
    using Complaint = std::function<void(const QString& error)>;

    /** @p complaint is called at the first frame that the device refuses, by the
     *  thread that records it; later frames are tried all the same. */
    explicit FrameTrace(QIODevice* device, Complaint complaint = Complaint());
    FrameTrace(const FrameTrace&) = delete;
    FrameTrace& operator=(const FrameTrace&) = delete;

    /** Writes the frame as of now. Returns false when the device refuses. */
    bool record(Direction direction, const QByteArray& bytes);

    /** Writes the frame as of @p time, in microseconds of the caller's clock. @p note,
     *  which begins with a blank, ends the fields. */
    bool record(Direction direction, const QByteArray& bytes, qint64 time,
                const QByteArray& note = QByteArray());

    /** Writes that the request @p bytes was not sent: its fields, but no bytes. */
    bool recordWithheld(const QByteArray& bytes, qint64 time);

private:
    bool write(const QByteArray& line);
    bool recordLine(const TraceEntry& entry, qint64 time);

    std::mutex m_mutex; // guards all below
    QIODevice* const m_device;
    Complaint m_complaint;   // null once it has been made
    qint64 m_last_time = -1; // of the last frame, microseconds; -1 before the first
};

} // namespace trace

#endif
