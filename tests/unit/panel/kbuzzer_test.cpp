#include "runtime/base/connectchecked.h"
#include "tests/unit/panel/buzzerfixture.h"

#include <algorithm>
#include <atomic>
#include <memory>

namespace {

typedef BuzzerFixture Buzzer;

/** Asks for a sound or for silence when all work is done, from the buzzer's own
 *  thread. */
class BuzzerCaller : public QObject {
    Q_OBJECT

public:
    explicit BuzzerCaller(KBuzzer& buzzer) : m_buzzer(buzzer) {}

public slots:
    void play() {
        if (!m_played.exchange(true))
            m_buzzer.makeSound(1, 880);
    }
    void silence() { m_buzzer.shutupBuzzer(); }

private:
    KBuzzer& m_buzzer;
    std::atomic<bool> m_played{false};
};

} // namespace

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

TEST_F(Buzzer, TellsAllWorkDoneAtMostTwiceForASound) {
    SignalCounter done; // outlives the buzzer's thread
    KBuzzer buzzer(running_clock);
    done.follow(&buzzer, SIGNAL(allWorkDone()));
    for (size_t sounds = 1; sounds <= 100; ++sounds) {
        buzzer.makeSound(1, 440);
        waitForTones(1 + 2 * sounds);
    }
    EXPECT_LE(done.value(), 1 + 2 * 100);
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

TEST_F(Buzzer, DividesItsClockIntoNotes) {
    KBuzzer buzzer(running_clock);
    EXPECT_EQ(buzzer.getFrequency(1, 0), 15774);
    EXPECT_EQ(buzzer.getFrequency(0, 2), 4425);
    EXPECT_EQ(buzzer.getFrequency(6, -2), 39855);
    EXPECT_EQ(buzzer.getFrequency(0, 1), 8250000 / 932);
    const int tones_of_octave[] = {466, 523, 554, 622, 698, 740, 831};
    for (int note = 0; note < 7; ++note)
        EXPECT_EQ(buzzer.getFrequency(note, 0), 8250000 / tones_of_octave[note]) << note;
    EXPECT_EQ(buzzer.getFrequency(7, 0), 0);
    EXPECT_EQ(buzzer.getFrequency(-1, 0), 0);
    EXPECT_EQ(buzzer.getFrequency(0, 3), 0);
    EXPECT_EQ(buzzer.getFrequency(0, -3), 0);
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

TEST_F(Buzzer, DropsTheWaitingSoundsWhenItIsDestroyed) {
    const int waiting = 100000; // more than can be played before the destructor has begun
    std::unique_ptr<KBuzzer> buzzer(new KBuzzer(manual_clock));
    for (int i = 0; i < waiting; ++i)
        buzzer->makeSound(1, 440);
    manual_clock.waitForSleepers(1);
    std::atomic<bool> destroyed(false);
    std::thread time([&] {
        while (!destroyed)
            manual_clock.advance(1);
    });
    buzzer.reset();
    destroyed = true;
    time.join();
    EXPECT_LT(tones().size(), size_t(2 * waiting));
}

TEST_F(Buzzer, TakesSoundsAndOrdersToBeSilentFromAnyThread) {
    KBuzzer buzzer(running_clock);
    std::thread silencer([&] {
        for (int i = 0; i < 20000; ++i)
            buzzer.shutupBuzzer();
    });
    for (int i = 0; i < 20000; ++i)
        buzzer.makeSound(1, 440);
    silencer.join();
    buzzer.makeSound(1, 880);
    while (deviceBytes().count('\x70') == 0) // a byte of 880, but of no other tone
        std::this_thread::yield();
}

TEST_F(Buzzer, PlaysOnAThreadOfTheLowestPriority) {
    KBuzzer buzzer(running_clock);
    EXPECT_EQ(buzzer.priority(), QThread::LowestPriority);
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
    BuzzerCaller second(buzzer);
    connectChecked(&buzzer, SIGNAL(allWorkDone()), &second, SLOT(play()), Qt::DirectConnection);
    buzzer.makeSound(1, 440);
    waitForTones(5);
    const Tones all = tones();
    EXPECT_EQ(std::count(all.begin(), all.end(), 880), 1);
}

TEST_F(Buzzer, AcceptsAnOrderToBeSilentFromASlotOfAllWorkDoneToItsEnd) {
    auto buzzer = std::make_unique<KBuzzer>(running_clock);
    BuzzerCaller silencer(*buzzer);
    connectChecked(buzzer.get(), SIGNAL(allWorkDone()), &silencer, SLOT(silence()),
                   Qt::DirectConnection);
    buzzer->makeSound(1, 440);
    waitForTones(3);
    buzzer.reset(); // tells it once more, and would wait for ever for a slot that cannot return
}

TEST_F(Buzzer, OfTheProcessIsOneRunningObject) {
    KBuzzer* buzzer = KBuzzer::getInstance();
    EXPECT_EQ(KBuzzer::getInstance(), buzzer);
    EXPECT_TRUE(buzzer->isRunning());
}

#include "kbuzzer_test.moc"
