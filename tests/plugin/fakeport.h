#ifndef TESTS_PLUGIN_FAKEPORT_H
#define TESTS_PLUGIN_FAKEPORT_H

#include "tests/plugin/hostcontract.h"
#include "tests/support/memorycontroller.h"

#include <QElapsedTimer>
#include <QList>
#include <QMutex>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <thread>

/** Answers from a controller in memory, unless it is silent, and remembers what was
 *  sent. Slots that the driver has no business with are counted. */
struct FakePort : host::Port {
    int slot2() override { return ++unexpected; }
    int slot3(char* buffer, int max) override {
        const int count = std::min(max, int(received.size()));
        std::memcpy(buffer, received.constData(), std::size_t(count));
        received.remove(0, count);
        return count;
    }
    int slot4(const char* buffer, int length) override {
        const QByteArray request(buffer, length);
        received = is_silent ? QByteArray() : controller.answer(request);
        QMutexLocker lock(&mutex);
        stations.append(requestStation(request));
        sent_msecs.append(since_start.elapsed());
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
    int slot18() override { return response_timeout; }
    unsigned slot19() override { return retries; }
    int slot20() override { return station; }
    int slot21() override { return ++unexpected; }
    unsigned slot22() override { return frame_interval; }

    FakePort() { since_start.start(); }

    /** The stations of the requests so far, once they are at least @p count. */
    QList<int> waitForRequests(int count) {
        for (;; std::this_thread::yield()) {
            QMutexLocker lock(&mutex);
            if (stations.size() >= count)
                return stations;
        }
    }

    /** When they were sent, ms. */
    QList<qint64> sentMsecs() {
        QMutexLocker lock(&mutex);
        return sent_msecs;
    }

    host::DeviceRecord device = {
        0x40, QString::fromLatin1("COM2"), 38400, 8, 0, 2, 0, QString(), -1, 0, {}};
    MemoryController controller;
    QByteArray received;
    int station = 1;
    // Each its own, so that none can stand for another.
    int response_timeout = 4321;
    unsigned retries = 1;
    unsigned frame_interval = 10;
    bool is_silent = false;
    std::atomic<int> controls{0};
    std::atomic<int> unexpected{0};

private:
    QElapsedTimer since_start;
    QMutex mutex; // guards the two lists
    QList<int> stations;
    QList<qint64> sent_msecs;
};

#endif
