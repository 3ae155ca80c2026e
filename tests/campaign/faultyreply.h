#ifndef TESTS_CAMPAIGN_FAULTYREPLY_H
#define TESTS_CAMPAIGN_FAULTYREPLY_H

#include "simulator/transmission.h"
#include "tests/campaign/dice.h"
#include "tests/campaign/linefault.h"

namespace campaign {

/** An answer, and what a fault may make something else of. */
struct AnswerParts {
    QByteArray request;
    simulator::Reply reply;
    QByteArray before;  // the station's reply before this one
    QByteArray foreign; // another station's answer to the same request
};

/** True when a request struck by @p kind is not carried out. */
bool isUnheard(LineFault::Kind kind);

/** What comes onto the line in place of the answer. */
simulator::Transmission faultyAnswer(const LineFault& fault, const AnswerParts& parts, Dice& dice);

/** A frame with two digits of its data changed so that the checksum still stands;
 *  as it is when it has no such digits. */
QByteArray forged(QByteArray frame, Dice& dice);

} // namespace campaign

#endif
