#include "runtime/panel/kbuzzer.h"

#include "runtime/base/connectchecked.h"
#include "runtime/panel/ksetting.h"
#include "runtime/panel/panelpaths.h"
#include "tests/support/fakeplatform.h"
#include "tests/support/messagelog.h"
#include "tests/support/scopedpanelpaths.h"
#include "tests/support/simulatedclock.h"
#include "tests/support/temporarydirectory.h"
#include "tests/unit/panel/signalcounter.h"

#include <QFile>
#include <QtEndian>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

const int PreferenceSetting = 12;

/** Asks for a sound when all work is done, from the buzzer's own thread. */
class SecondSound : public QObject {
    Q_OBJECT

public:
    explicit SecondSound(KBuzzer& buzzer) : m_buzzer(buzzer) {}

public slots:
    void play() {
        if (!m_played.exchange(true))
            m_buzzer.makeSound(1, 880);
    }

private:
    KBuzzer& m_buzzer;
    std::atomic<bool> m_played{false};
};

class Buzzer : public ::testing::Test {
protected:
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

} // namespace

TEST_F(Buzzer, SilencesTheDeviceAtTheStartWithThePanelKernelsEvent) {
    KBuzzer buzzer(running_clock);
    EXPECT_EQ(deviceBytes(), QByteArray("\0\0\0\0\0\0\0\0\x12\0\x02\0\0\0\0\0", 16));
}

TEST_F(Buzzer, PlaysSoundsInOrderEachFollowedBySilence) {
    KBuzzer buzzer(running_clock);
    buzzer.makeSound(100, 440);
    buzzer.makeSound(50, 70000);
    buzzer.makeSound(1, 880);
    waitForTones(7);
    EXPECT_EQ(tones(), (Tones{0, 440, 0, 70000, 0, 880, 0}));
}

TEST_F(Buzzer, SoundsAsLongAsAsked) {
    KBuzzer buzzer(manual_clock);
    buzzer.makeSound(100, 440);
    manual_clock.waitForSleepers(1);
    manual_clock.advance(99);
    manual_clock.waitForSleepers(1);
    EXPECT_EQ(tones(), (Tones{0, 440}));
    manual_clock.advance(1);
    waitForTones(3);
}

TEST_F(Buzzer, HasSixStandardSounds) {
    struct {
        int duration;
        int tone;
    } const sounds[] = {{120, 4600}, {200, 2764}, {160, 3476},
                        {240, 2309}, {100, 2900}, {100, 2900}};
    KBuzzer buzzer(manual_clock);
    for (int type = 0; type < 6; ++type) {
        const size_t before = tones().size();
        buzzer.makeSound(AbstractBuzzerInterface::SoundType(type));
        manual_clock.waitForSleepers(1);
        EXPECT_EQ(tones().back(), sounds[type].tone) << type;
        manual_clock.advance(sounds[type].duration - 1);
        EXPECT_EQ(tones().size(), before + 1) << type;
        manual_clock.advance(1);
        waitForTones(before + 2);
    }
}

TEST_F(Buzzer, MakesNoSoundOfAnUnknownType) {
    fakePlatform().x86_hmi = true; // where a sound shows at once
    KBuzzer buzzer(running_clock);
    buzzer.makeSound(AbstractBuzzerInterface::SoundType(6));
    EXPECT_TRUE(fakePlatform().alarms.isEmpty());
    buzzer.makeSound(AbstractBuzzerInterface::SOUND_CLICK);
    EXPECT_EQ(fakePlatform().alarms.size(), 1);
}

TEST_F(Buzzer, NeverMakesItsCallersWaitForASoundToEnd) {
    KBuzzer buzzer(manual_clock);
    buzzer.makeSound(60000, 440);
    manual_clock.waitForSleepers(1);
    for (int i = 0; i < 1000; ++i)
        buzzer.makeSound(1, 880); // returns although time stands still
    EXPECT_EQ(tones(), (Tones{0, 440}));
    buzzer.shutupBuzzer();
    manual_clock.advance(60000);
}

TEST_F(Buzzer, TellsAllWorkDoneOnlyWhenTheQueueHasDrained) {
    SignalCounter done; // outlives the buzzer's thread
    KBuzzer buzzer(manual_clock);
    done.follow(&buzzer, SIGNAL(allWorkDone()));
    buzzer.makeSound(100, 440);
    buzzer.makeSound(100, 880);
    manual_clock.waitForSleepers(1);
    const int before = done.value();
    manual_clock.advance(100);
    waitForTones(4); // silence, then the second sound
    manual_clock.waitForSleepers(1);
    EXPECT_EQ(done.value(), before);
    manual_clock.advance(100);
    done.waitFor(before + 1);
    EXPECT_EQ(tones(), (Tones{0, 440, 0, 880, 0})) << "silent before it says so";
}

TEST_F(Buzzer, TellsAllWorkDoneOnceMoreWhenItStops) {
    auto buzzer = std::make_unique<KBuzzer>(running_clock);
    SignalCounter done(buzzer.get(), SIGNAL(allWorkDone()));
    buzzer->makeSound(1, 440);
    waitForTones(3);
    done.waitFor(1);
    const int before = done.value();
    buzzer.reset();
    EXPECT_GT(done.value(), before);
}

TEST_F(Buzzer, DropsSoundsWhileDisabledButStillTellsAllWorkDone) {
    ASSERT_TRUE(KSetting::getInstance()->setSettingValue(PreferenceSetting, 0));
    SignalCounter done; // outlives the buzzer's thread
    KBuzzer buzzer(running_clock);
    EXPECT_FALSE(buzzer.isBuzzerEnabled());
    done.follow(&buzzer, SIGNAL(allWorkDone()));
    buzzer.makeSound(100, 440);
    EXPECT_EQ(done.fromThisThread(), 1) << "told before the call returns";
    EXPECT_EQ(tones(), Tones{0});
}

TEST_F(Buzzer, IgnoresEverySoundAfterTheLastOneAndTellsNothing) {
    fakePlatform().x86_hmi = true;
    SignalCounter done; // outlives the buzzer's thread
    KBuzzer buzzer(running_clock);
    done.follow(&buzzer, SIGNAL(allWorkDone()));
    buzzer.setLastSound(true);
    buzzer.makeSound(100, 440);
    EXPECT_TRUE(fakePlatform().alarms.isEmpty());
    EXPECT_EQ(done.fromThisThread(), 0);
    buzzer.setLastSound(false);
    buzzer.makeSound(100, 440);
    EXPECT_EQ(fakePlatform().alarms.size(), 1);
    EXPECT_EQ(done.fromThisThread(), 1);
}

TEST_F(Buzzer, TurnedOffDropsTheWaitingSoundsAndLetsThePlayingOneFinish) {
    SignalCounter done; // outlives the buzzer's thread
    KBuzzer buzzer(manual_clock);
    done.follow(&buzzer, SIGNAL(allWorkDone()));
    buzzer.makeSound(100, 440);
    manual_clock.waitForSleepers(1);
    buzzer.makeSound(100, 880);
    const int before = done.value();
    buzzer.setBuzzerEnabled(false);
    EXPECT_EQ(tones(), (Tones{0, 440}));
    manual_clock.advance(100);
    done.waitFor(before + 1);
    EXPECT_EQ(tones(), (Tones{0, 440, 0}));
}

TEST_F(Buzzer, SavesAChangedPreferenceAndTellsIt) {
    SignalCounter told; // outlives the buzzer's thread
    KBuzzer buzzer(running_clock);
    told.follow(&buzzer, SIGNAL(buzzerState(bool)));
    buzzer.setBuzzerEnabled(false);
    EXPECT_FALSE(buzzer.isBuzzerEnabled());
    EXPECT_EQ(told.value(), 1);
    EXPECT_EQ(KSetting::getInstance()->getSettingValue(PreferenceSetting), 0);
    buzzer.setBuzzerEnabled(true);
    EXPECT_EQ(told.value(), 2);
    EXPECT_EQ(KSetting::getInstance()->getSettingValue(PreferenceSetting), 1);
    EXPECT_TRUE(fakePlatform().set_buzzer_calls.isEmpty()) << "the panel keeps it itself";
}

TEST_F(Buzzer, TellsAndSavesNothingForAnUnchangedPreference) {
    SignalCounter told; // outlives the buzzer's thread
    KBuzzer buzzer(running_clock);
    told.follow(&buzzer, SIGNAL(buzzerState(bool)));
    ASSERT_TRUE(QFile::remove(panelPaths().saved_settings));
    buzzer.setBuzzerEnabled(true);
    EXPECT_EQ(told.value(), 0);
    EXPECT_FALSE(QFile::exists(panelPaths().saved_settings));
}

TEST_F(Buzzer, ReadsThePreferenceOfThePanelFromSetting12) {
    fakePlatform().buzzer_on = false;
    ASSERT_TRUE(KSetting::getInstance()->setSettingValue(PreferenceSetting, 65535));
    EXPECT_TRUE(KBuzzer(running_clock).isBuzzerEnabled());
    EXPECT_TRUE(log.contains("buzzer val "));
}

TEST_F(Buzzer, LeavesSoundAndPreferenceToTheHostOnASimulator) {
    fakePlatform().x86_hmi = true;
    ASSERT_TRUE(KSetting::getInstance()->setSettingValue(PreferenceSetting, 0));
    SignalCounter done; // outlives the buzzer's thread
    KBuzzer buzzer(running_clock);
    EXPECT_TRUE(buzzer.isBuzzerEnabled()) << "as the host says";
    done.follow(&buzzer, SIGNAL(allWorkDone()));
    buzzer.makeSound(100, 440);
    const QList<QPair<int, int>> alarms = QList<QPair<int, int>>() << qMakePair(440, 100);
    EXPECT_EQ(fakePlatform().alarms, alarms) << "frequency first";
    EXPECT_EQ(done.fromThisThread(), 1);
    buzzer.setBuzzerEnabled(false);
    EXPECT_EQ(fakePlatform().set_buzzer_calls, QList<bool>() << false);
    EXPECT_EQ(KSetting::getInstance()->getSettingValue(PreferenceSetting), 0);
    EXPECT_EQ(tones(), Tones{0});
}

TEST_F(Buzzer, LeavesTheSoundToTheHostOnModel4ButReadsThePanelsPreference) {
    fakePlatform().model_code = 4;
    fakePlatform().buzzer_on = false;
    KBuzzer buzzer(running_clock);
    EXPECT_TRUE(buzzer.isBuzzerEnabled()) << "as setting 12 says";
    buzzer.makeSound(100, 440);
    EXPECT_EQ(fakePlatform().alarms.size(), 1);
    buzzer.setBuzzerEnabled(false);
    EXPECT_EQ(fakePlatform().set_buzzer_calls, QList<bool>() << false);
    EXPECT_EQ(KSetting::getInstance()->getSettingValue(PreferenceSetting), 0);
    EXPECT_EQ(tones(), Tones{0});
}

TEST_F(Buzzer, DividesItsClockIntoNotes) {
    KBuzzer buzzer(running_clock);
    EXPECT_EQ(buzzer.getFrequency(1, 0), 15774);
    EXPECT_EQ(buzzer.getFrequency(0, 2), 4425);
    EXPECT_EQ(buzzer.getFrequency(6, -2), 39855);
    EXPECT_EQ(buzzer.getFrequency(0, 1), 8250000 / 932);
    EXPECT_EQ(buzzer.getFrequency(7, 0), 0);
    EXPECT_EQ(buzzer.getFrequency(-1, 0), 0);
    EXPECT_EQ(buzzer.getFrequency(0, 3), 0);
    EXPECT_EQ(buzzer.getFrequency(0, -3), 0);
}

TEST_F(Buzzer, StaysSilentWithoutADevice) {
    ASSERT_TRUE(QFile::remove(panelPaths().buzzer_device));
    SignalCounter done; // outlives the buzzer's thread
    KBuzzer buzzer(running_clock);
    done.follow(&buzzer, SIGNAL(allWorkDone()));
    buzzer.makeSound(100, 440);
    done.waitFor(1);
    EXPECT_FALSE(QFile::exists(panelPaths().buzzer_device));
}

TEST_F(Buzzer, WritesEachEventInOnePieceToAFifo) {
    ASSERT_TRUE(QFile::remove(panelPaths().buzzer_device));
    const QByteArray fifo = panelPaths().buzzer_device.toLocal8Bit();
    ASSERT_EQ(mkfifo(fifo.constData(), 0600), 0);
    const int reader = open(fifo.constData(), O_RDWR);
    ASSERT_GE(reader, 0);
    KBuzzer buzzer(running_clock);
    buzzer.makeSound(100, 0x0201);
    const QByteArray head("\0\0\0\0\0\0\0\0\x12\0\x02\0", 12);
    for (const QByteArray& value : {QByteArray(4, '\0'), QByteArray("\x01\x02\0\0", 4)}) {
        QByteArray event(16, '\xEE');
        ASSERT_EQ(read(reader, event.data(), 16), 16);
        EXPECT_EQ(event, head + value);
    }
    close(reader);
}

TEST_F(Buzzer, TakesANegativeDurationForNone) {
    KBuzzer buzzer(manual_clock);
    buzzer.makeSound(-1, 440);
    waitForTones(3);
    EXPECT_EQ(tones(), (Tones{0, 440, 0}));
}

TEST_F(Buzzer, PlaysEverySoundOfManyCallers) {
    KBuzzer buzzer(running_clock);
    std::vector<std::thread> callers;
    for (int caller = 1; caller <= 4; ++caller) {
        callers.emplace_back([&buzzer, caller] {
            for (int i = 0; i < 200; ++i)
                buzzer.makeSound(1, caller);
        });
    }
    for (std::thread& caller : callers)
        caller.join();
    waitForTones(1 + 2 * 800);
    const Tones all = tones();
    for (int caller = 1; caller <= 4; ++caller)
        EXPECT_EQ(std::count(all.begin(), all.end(), caller), 200);
    EXPECT_EQ(std::count(all.begin(), all.end(), 0), 801);
}

TEST_F(Buzzer, LosesNoWakeUp) {
    SignalCounter done; // outlives the buzzer's thread
    KBuzzer buzzer(running_clock);
    done.follow(&buzzer, SIGNAL(allWorkDone()));
    for (int sound = 0; sound < 500; ++sound) {
        const int before = done.value();
        buzzer.makeSound(1, 440); // falls anywhere into the thread's way back to its wait
        done.waitFor(before + 1);
    }
    waitForTones(1 + 2 * 500);
    EXPECT_EQ(tones().back(), 0);
}

TEST_F(Buzzer, CanBeDestroyedAtOnceOrWithSoundsWaiting) {
    for (int sounds = 0; sounds < 50; ++sounds) {
        KBuzzer buzzer(running_clock);
        for (int i = 0; i < sounds; ++i)
            buzzer.makeSound(1, 440);
    }
    EXPECT_EQ(tones().back(), 0) << "never left sounding";
}

TEST_F(Buzzer, AcceptsASoundFromASlotOfAllWorkDone) {
    KBuzzer buzzer(running_clock);
    SecondSound second(buzzer);
    connectChecked(&buzzer, SIGNAL(allWorkDone()), &second, SLOT(play()), Qt::DirectConnection);
    buzzer.makeSound(1, 440);
    waitForTones(5);
    const Tones all = tones();
    EXPECT_EQ(std::count(all.begin(), all.end(), 880), 1);
}

TEST_F(Buzzer, OfTheProcessIsOneRunningObject) {
    KBuzzer* buzzer = KBuzzer::getInstance();
    EXPECT_EQ(KBuzzer::getInstance(), buzzer);
    EXPECT_TRUE(buzzer->isRunning());
}

#include "kbuzzer_test.moc"
