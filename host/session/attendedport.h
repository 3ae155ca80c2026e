#ifndef HOST_SESSION_ATTENDEDPORT_H
#define HOST_SESSION_ATTENDEDPORT_H

#include "host/line/hostport.h"
#include "host/session/lineattendance.h"

#include <QVariant>

namespace host {

/** A port between whose exchanges another thread can look at the driver. The
 *  driver asks for DiscardReceived before each request and at no other time. */
class AttendedPort : public HostPort {
public:
    template <typename... Arguments>
    explicit AttendedPort(Arguments&&... arguments)
        : HostPort(std::forward<Arguments>(arguments)...) {
        setExchangeSink([this](const Exchange& exchange) { m_attendance.note(exchange); });
    }

    void control(int code, QVariant argument) override {
        if (code == DiscardReceived)
            m_attendance.betweenExchanges();
        HostPort::control(code, argument);
    }

    LineAttendance& attendance() { return m_attendance; }

private:
    LineAttendance m_attendance;
};

} // namespace host

#endif
