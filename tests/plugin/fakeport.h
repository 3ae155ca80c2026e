#ifndef TESTS_PLUGIN_FAKEPORT_H
#define TESTS_PLUGIN_FAKEPORT_H

#include "tests/plugin/hostcontract.h"
#include "tests/support/memorycontroller.h"

#include <algorithm>
#include <atomic>
#include <cstring>

/** Answers from a controller in memory. Slots that the driver has no business
 *  with are counted. */
struct FakePort : host::Port {
    int slot2() override { return ++unexpected; }
    int slot3(char* buffer, int max) override {
        const int count = std::min(max, int(received.size()));
        std::memcpy(buffer, received.constData(), std::size_t(count));
        received.remove(0, count);
        return count;
    }
    int slot4(const char* buffer, int length) override {
        received = controller.answer(QByteArray(buffer, length));
        return length;
    }
    int slot5() override { return ++unexpected; }
    int slot6() override { return ++unexpected; }
    int slot7() override { return ++unexpected; }
    const host::DeviceRecord* slot8() override { return &device; }
    int slot9() override { return ++unexpected; }
    int slot10() override { return ++unexpected; }
    int slot11() override { return ++unexpected; }
    void slot12(int code, QVariant argument) override {
        controls += code == 12 && argument == QVariant(0);
        received.clear();
    }
    int slot13() override { return ++unexpected; }
    int slot14() override { return ++unexpected; }
    int slot15() override { return ++unexpected; }
    int slot16() override { return ++unexpected; }
    int slot17() override { return ++unexpected; }
    int slot18() override { return 4321; }
    unsigned slot19() override { return 1; }
    int slot20() override { return station; }
    int slot21() override { return ++unexpected; }
    unsigned slot22() override { return 10; }

    host::DeviceRecord device = {
        0x40, QString::fromLatin1("COM2"), 38400, 8, 0, 2, 0, QString(), -1, 0, {}};
    MemoryController controller;
    QByteArray received;
    int station = 1;
    std::atomic<int> controls{0};
    std::atomic<int> unexpected{0};
};

#endif
