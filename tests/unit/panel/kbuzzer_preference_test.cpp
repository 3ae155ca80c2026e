#include "runtime/base/connectchecked.h"
#include "tests/unit/panel/buzzerfixture.h"

#include <QFile>

namespace {

typedef BuzzerFixture BuzzerPreference;

/** What was so when a change of the preference was told. */
class PreferenceWatch : public QObject {
    Q_OBJECT

public:
    explicit PreferenceWatch(KBuzzer& buzzer) : m_buzzer(buzzer) {
        connectChecked(&buzzer, SIGNAL(buzzerState(bool)), this, SLOT(note(bool)));
    }

    QList<bool> told;
    QList<bool> enabled;
    QList<int> saved;

public slots:
    void note(bool on) {
        told << on;
        enabled << m_buzzer.isBuzzerEnabled();
        saved << KSetting::getInstance()->getSettingValue(12);
    }

private:
    KBuzzer& m_buzzer;
};

} // namespace

TEST_F(BuzzerPreference, DropsSoundsWhileDisabledButStillTellsAllWorkDone) {
    ASSERT_TRUE(KSetting::getInstance()->setSettingValue(PreferenceSetting, 0));
    SignalCounter done; // outlives the buzzer's thread
    KBuzzer buzzer(running_clock);
    EXPECT_FALSE(buzzer.isBuzzerEnabled());
    done.follow(&buzzer, SIGNAL(allWorkDone()));
    buzzer.makeSound(100, 440);
    EXPECT_EQ(done.fromThisThread(), 1) << "told before the call returns";
    EXPECT_EQ(tones(), Tones{0});
}

TEST_F(BuzzerPreference, TurnedOffDropsTheWaitingSoundsAndLetsThePlayingOneFinish) {
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

TEST_F(BuzzerPreference, SavesAChangedPreferenceAndTellsIt) {
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

TEST_F(BuzzerPreference, TellsAndSavesNothingForAnUnchangedPreference) {
    SignalCounter told; // outlives the buzzer's thread
    KBuzzer buzzer(running_clock);
    told.follow(&buzzer, SIGNAL(buzzerState(bool)));
    ASSERT_TRUE(QFile::remove(panelPaths().saved_settings));
    buzzer.setBuzzerEnabled(true);
    EXPECT_EQ(told.value(), 0);
    EXPECT_FALSE(QFile::exists(panelPaths().saved_settings));
}

TEST_F(BuzzerPreference, ReadsThePreferenceOfThePanelFromSetting12) {
    fakePlatform().buzzer_on = false;
    ASSERT_TRUE(KSetting::getInstance()->setSettingValue(PreferenceSetting, 65535));
    EXPECT_TRUE(KBuzzer(running_clock).isBuzzerEnabled());
    EXPECT_TRUE(log.contains("buzzer val  65535"));
}

TEST_F(BuzzerPreference, LeavesSoundAndPreferenceToTheHostOnASimulator) {
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

TEST_F(BuzzerPreference, LeavesTheSoundToTheHostOnModel4ButReadsThePanelsPreference) {
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

TEST_F(BuzzerPreference, IsToldBeforeItIsSavedAndInForce) {
    KBuzzer buzzer(running_clock);
    const PreferenceWatch watch(buzzer);
    buzzer.setBuzzerEnabled(false);
    buzzer.setBuzzerEnabled(true);
    EXPECT_EQ(watch.told, QList<bool>() << false << true);
    EXPECT_EQ(watch.enabled, QList<bool>() << true << false);
    EXPECT_EQ(watch.saved, QList<int>() << 1 << 0);
}

#include "kbuzzer_preference_test.moc"
