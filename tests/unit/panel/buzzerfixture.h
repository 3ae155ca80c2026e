#ifndef TESTS_UNIT_PANEL_BUZZERFIXTURE_H
#define TESTS_UNIT_PANEL_BUZZERFIXTURE_H

#include "runtime/panel/kbuzzer.h"
#include "runtime/panel/ksetting.h"
#include "runtime/panel/panelpaths.h"
#include "tests/support/fakeplatform.h"
#include "tests/support/messagelog.h"
#include "tests/support/scopedpanelpaths.h"
#include "tests/support/simulatedclock.h"
#include "tests/support/temporarydirectory.h"
#include "tests/unit/panel/signalcounter.h"

#include <QtEndian>

#include <gtest/gtest.h>

#include <thread>
#include <vector>

/** A panel whose buzzer is switched on and whose device is a file that keeps
 *  what is written to it. */
class BuzzerFixture : public ::testing::Test {
protected:
    static const int PreferenceSetting = 12;

    void SetUp() override {
        fakePlatform() = FakePlatform();
        directory.write(QString::fromLatin1("event1"), QByteArray());
        ASSERT_TRUE(KSetting::getInstance()->setSettingValue(PreferenceSetting, 1));
    }
    void TearDown() override { fakePlatform() = FakePlatform(); }

    QByteArray deviceBytes() const { return directory.read(QString::fromLatin1("event1")); }

    /** The tones sent to the device so far; 0 is silence. */
    std::vector<int> tones() const {
        const QByteArray bytes = deviceBytes();
        EXPECT_EQ(bytes.size() % 16, 0);
        std::vector<int> values;
        for (int at = 0; at < bytes.size(); at += 16) {
            EXPECT_EQ(bytes.mid(at, 12), QByteArray("\0\0\0\0\0\0\0\0\x12\0\x02\0", 12));
            const void* value = bytes.constData() + at + 12;
            values.push_back(qFromLittleEndian<qint32>(static_cast<const uchar*>(value)));
        }
        return values;
    }

    /** Waits, as long as it takes, until that many events were sent. */
    void waitForTones(size_t count) const {
        while (tones().size() < count)
            std::this_thread::yield();
    }

    using Tones = std::vector<int>;

    TemporaryDirectory directory;
    ScopedPanelPaths paths{directory.path()};
    MessageLog log;
    SimulatedClock running_clock{1}; // a sound takes no real time
    SimulatedClock manual_clock{0};  // a sound lasts until advance()
};

#endif
