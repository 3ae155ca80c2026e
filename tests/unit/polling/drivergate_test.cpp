#include "runtime/drivers/polling/drivergate.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <thread>

TEST(DriverGate, GrantsCallsUntilItIsClosed) {
    DriverGate gate;
    EXPECT_TRUE(DriverGate::Pass(gate).isGranted());
    EXPECT_FALSE(gate.isClosed());
    gate.close();
    EXPECT_FALSE(DriverGate::Pass(gate).isGranted());
    EXPECT_TRUE(gate.isClosed());
}

TEST(DriverGate, AnEmptyGateIsNotWaitedFor) {
    DriverGate gate;
    { DriverGate::Pass call(gate); }
    gate.close();
    { DriverGate::Pass refused(gate); }
    gate.waitUntilEmpty();
    EXPECT_TRUE(gate.isClosed());
}

TEST(DriverGate, WaitsForARunningCallToReturn) {
    DriverGate gate;
    std::promise<void> inside;
    std::promise<void> let_go;
    std::atomic<bool> returned(false);
    std::thread caller([&] {
        DriverGate::Pass call(gate);
        inside.set_value();
        let_go.get_future().wait();
        returned = true;
    });
    inside.get_future().wait();
    gate.close();
    std::promise<void> leaving;
    std::thread leaver([&] {
        leaving.set_value();
        gate.waitUntilEmpty();
        EXPECT_TRUE(returned);
    });
    leaving.get_future().wait();
    std::this_thread::sleep_for(std::chrono::milliseconds(20)); // who does not wait is through
    let_go.set_value();
    leaver.join();
    caller.join();
}
