#ifndef TESTS_UNIT_DMC50V3_POLLEDBLOCK_H
#define TESTS_UNIT_DMC50V3_POLLEDBLOCK_H

#include "runtime/interfaces/communicatorcommand.h"
#include "tests/support/fixedreplyport.h"
#include "tests/support/freeclock.h"
#include "tests/unit/dmc50v3/pollingthreadprobe.h"

/** A polling thread, run step by step, that polls the first double words of
 *  station 1 and gets the same reply every time. */
struct PolledBlock {
    /** As FixedReplyPort; the block's double words have the addresses from 0 on. */
    PolledBlock(int double_words, const FixedReplyPort& replies)
        : port(replies), thread(&port, &valid, 1, clock), probe(thread) {
        for (quint32 address = 0; address < quint32(double_words); ++address)
            valid[1].push_back(address);
        QList<CommunicatorCommand> session;
        session.append(CommunicatorCommand(QString::fromLatin1("NA0"),
                                           CommunicatorCommand::DoubleWord, double_words));
        thread.setSessionCommand(session);
    }

    AddressVectorMap valid;
    FixedReplyPort port;
    FreeClock clock;
    PollingThread thread;
    PollingThreadProbe probe;
};

#endif
