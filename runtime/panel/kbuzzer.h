#ifndef RUNTIME_PANEL_KBUZZER_H
#define RUNTIME_PANEL_KBUZZER_H

#include "runtime/base/clock.h"
#include "runtime/base/panelservice.h"
#include "runtime/panel/abstractbuzzerinterface.h"

#include <QList>
#include <QMutex>
#include <QThread>
#include <QWaitCondition>

#include <atomic>

/** One queued sound. */
struct KBuzzerQueueItem {
    int duration;  ///< ms
    int frequency; ///< Hz
};

/** Plays short beeps one after the other on a thread of its own, each followed
 *  at once by silence. On a simulator, and on the panel model whose buzzer the
 *  host drives, sounds and preference go to the host's Platform instead.
 *
 *  Thread: makeSound, setLastSound, isBuzzerEnabled and shutupBuzzer from any;
 *  the preference is changed on the GUI thread, where the settings live. */
class PANEL_SERVICE KBuzzer : public QThread, public AbstractBuzzerInterface {
    Q_OBJECT

public:
    /** Opens and silences the device and starts the thread. @p clock times the
     *  sounds and must outlive the object. */
    explicit KBuzzer(Clock& clock = Clock::system());

    /** Drops the waiting sounds and returns when the one that plays has ended: a
     *  thread must not outlive its object. */
    ~KBuzzer() override;

    /** The process's buzzer, made by the first call, from the GUI thread. */
    static KBuzzer* getInstance();

    bool isBuzzerEnabled() override;
    void setBuzzerEnabled(bool on) override;
    void makeSound(int duration, int frequency) override;
    void makeSound(AbstractBuzzerInterface::SoundType type) override;
    void setLastSound(bool last) override;
    int getFrequency(int note, int octave) override;

    /** Drops the waiting sounds; the one that plays ends by itself. */
    void shutupBuzzer();

signals:
    void buzzerState(bool on);

    /** Nothing is waiting any more; also answers a sound that was dropped
     *  because the buzzer is off, or that the host plays. */
    void allWorkDone();

protected:
    void run() override;

private slots:
    void delayedInitial();

private:
    Q_DISABLE_COPY(KBuzzer)

    void processBeep(QMutexLocker& lock);
    void setBuzzerCommand(int value);
    void setBuzzerSwitch(bool on);
    void setBuzzerFrequency(int value);
    bool getLocalSetting();
    void setLocalSetting(bool on);

    std::atomic<bool> enabled;
    QList<KBuzzerQueueItem> queue; // guarded by mutex; oldest first
    std::atomic<bool> lastSound;
    int fd; // set by the constructor: 0 before, -1 without a device
    std::atomic<int> frequencyCopy;
    QWaitCondition cond;
    QMutex mutex;               // never held while a sound plays or a signal is emitted
    bool workPending;           // guarded by mutex: a sound was queued since the last allWorkDone
    bool stopFlag;              // guarded by mutex
    std::atomic<int> frequency; // Hz
    bool deviceOpened;          // set by the constructor
    Clock& m_clock;

    static KBuzzer* m_instance; // lives to the end of the process
    static const int base_tone[7];
};

#endif
