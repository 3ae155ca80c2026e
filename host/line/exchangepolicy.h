#ifndef HOST_LINE_EXCHANGEPOLICY_H
#define HOST_LINE_EXCHANGEPOLICY_H

#include <QByteArray>

namespace host {

/** How a port makes the driver's exchanges: a request after begin(), then the reply
 *  piece by piece until the driver has enough of it. The thread that uses the
 *  port. */
class ExchangePolicy {
public:
    virtual ~ExchangePolicy() = default;

    /** The driver asks nothing more of the exchange before. */
    virtual void begin() = 0;

    /** False: nothing can be sent at all. */
    virtual bool request(const QByteArray& frame) = 0;

    /** At most @p max bytes of the reply; empty: no more will come. */
    virtual QByteArray reply(int max) = 0;
};

} // namespace host

#endif
