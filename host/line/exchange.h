#ifndef HOST_LINE_EXCHANGE_H
#define HOST_LINE_EXCHANGE_H

#include <QtGlobal>

#include <functional>
#include <vector>

namespace host {

/** A request that a station has answered without a fault. */
struct Exchange {
    int station = 0;
    bool is_write = false;
    std::vector<quint32> addresses; // of the double words, in the request's order
    qint64 sent_usecs = 0;          // when it was first sent, on the port's clock
    qint64 done_usecs = 0;          // when its answer was complete
};

/** Hears of exchanges on the thread that uses the port, before the driver has the
 *  answer. It must not wait for anything. */
using ExchangeSink = std::function<void(const Exchange&)>;

} // namespace host

#endif
