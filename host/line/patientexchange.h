#ifndef HOST_LINE_PATIENTEXCHANGE_H
#define HOST_LINE_PATIENTEXCHANGE_H

#include "host/line/exchangepolicy.h"
#include "host/line/linerecorder.h"
#include "host/line/rawline.h"
#include "host/line/wiretime.h"

namespace host {

/** Waits the whole response timeout for everybody and hands on whatever comes, in
 *  whatever protocol. Line and recorder are the port's. */
class PatientExchange : public ExchangePolicy {
public:
    PatientExchange(RawLine& line, LineRecorder& recorder, const WireTime& wire)
        : m_line(line), m_recorder(recorder), m_wire(wire) {}

    /** Throws away what has been received. When the exchange before brought no
     *  complete line, the rest of a late reply may be under way: so it first waits
     *  until the line is quiet, at most one response timeout. */
    void begin() override;
    bool request(const QByteArray& frame) override;
    QByteArray reply(int max) override;

private:
    void awaitQuiet();

    RawLine& m_line;
    LineRecorder& m_recorder;
    const WireTime m_wire;
};

} // namespace host

#endif
