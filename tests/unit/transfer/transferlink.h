#ifndef TESTS_UNIT_TRANSFER_TRANSFERLINK_H
#define TESTS_UNIT_TRANSFER_TRANSFERLINK_H

#include "host/session/linksession.h"
#include "tests/unit/line/scriptedchannel.h"
#include "tests/unit/transfer/transferdriver.h"

#include <memory>

/** A link with a scripted driver, in virtual time. */
struct TransferLink {
    TransferLink() {
        const DeviceSetting device(DEVICE_RS485, QStringLiteral("COM2"), 38400, 8, 0, 2);
        const DriverSetting timing(TimeoutMsecs, 0, 1, 20);
        auto port = std::make_unique<host::HostPort>(
            std::unique_ptr<host::ByteChannel>(&channel), device, timing, [](const QString&) {},
            host::PortOptions{nullptr, &clock});
        session = std::make_unique<host::LinkSession>(
            std::move(port), std::unique_ptr<DriverInterface>(&driver), clock);
    }

    static constexpr int TimeoutMsecs = 4000;

    SimulatedClock clock;
    ScriptedChannel& channel = *new ScriptedChannel; // the port's
    TransferDriver& driver = *new TransferDriver;    // the session's
    std::unique_ptr<host::LinkSession> session;
};

#endif
