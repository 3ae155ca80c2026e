#ifndef SIMULATOR_TRANSMISSION_H
#define SIMULATOR_TRANSMISSION_H

#include "simulator/fault.h"

namespace simulator {

/** What goes onto the line in answer to one request, and when. */
struct Transmission {
    struct Piece {
        int pause_ms; // before the piece, the line being quiet
        QByteArray bytes;
    };
    QByteArray echo; // comes back while the request is on the line, so before any pause
    std::vector<Piece> pieces;
    std::optional<int> closed_ms; // the line is closed for so long, after all pieces

    /** All bytes in the order they leave. */
    QByteArray bytes() const;
};

/** True when a request struck by @p kind does not reach the controller's
 *  program: it is neither carried out nor refused. */
bool preventsAnswer(Fault::Kind kind);

/** The whole of @p reply at once: no fault. */
Transmission plainTransmission(const Reply& reply);

/** What @p fault makes of @p reply, the answer to the bytes @p request. For a
 *  fault that prevents the answer the reply is not used. */
Transmission faultyTransmission(const Fault& fault, const QByteArray& request, Reply reply);

} // namespace simulator

#endif
