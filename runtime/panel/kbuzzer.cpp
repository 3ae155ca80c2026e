#include "runtime/panel/kbuzzer.h"

#include "runtime/interfaces/platform.h"
#include "runtime/panel/ksetting.h"
#include "runtime/panel/panelpaths.h"

#include <QDebug>
#include <QFile>
#include <QtEndian>

#include <fcntl.h>
#include <unistd.h>

namespace {

const int BuzzerSetting = 12; // number of the on/off preference in KSetting
const int HostDrivenModel = 4;

const KBuzzerQueueItem StandardSounds[] = {{120, 4600}, {200, 2764}, {160, 3476},
                                           {240, 2309}, {100, 2900}, {100, 2900}};
const int StandardSoundCount = int(sizeof StandardSounds / sizeof *StandardSounds);

const int DividerClockHz = 8250000;

// The panel kernel's input event: 16 bytes, little-endian, on every machine.
// Bytes 0 to 7 are its time stamp, which the kernel sets itself.
const int InputEventBytes = 16;
const quint16 SoundEvent = 0x12;
const quint16 ToneCode = 2;

/** A tone in Hz, or 0 for silence, as the device takes it. */
QByteArray toneEvent(int value) {
    QByteArray event(InputEventBytes, '\0');
    uchar* bytes = reinterpret_cast<uchar*>(event.data());
    qToLittleEndian<quint16>(SoundEvent, bytes + 8);
    qToLittleEndian<quint16>(ToneCode, bytes + 10);
    qToLittleEndian<qint32>(value, bytes + 12);
    return event;
}

bool hostDrivesBuzzer() {
    return Platform::getInstance()->isX86HMI() || platformModelCode() == HostDrivenModel;
}

} // namespace

KBuzzer* KBuzzer::m_instance = nullptr;
const int KBuzzer::base_tone[7] = {466, 523, 554, 622, 698, 740, 831};

KBuzzer::KBuzzer(Clock& clock)
    : enabled(getLocalSetting())
    , lastSound(false)
    , fd(0)
    , frequencyCopy(0)
    , workPending(false)
    , stopFlag(false)
    , frequency(0)
    , deviceOpened(false)
    , m_clock(clock) {
    setBuzzerCommand(0);
    delayedInitial();
}

KBuzzer::~KBuzzer() {
    {
        QMutexLocker lock(&mutex);
        stopFlag = true;
        queue.clear();
        cond.wakeAll();
    }
    wait();
    if (fd != 0)
        ::close(fd);
}

KBuzzer* KBuzzer::getInstance() {
    if (!m_instance)
        m_instance = new KBuzzer;
    return m_instance;
}

void KBuzzer::delayedInitial() {
    if (!isRunning())
        start(QThread::LowestPriority);
}

bool KBuzzer::isBuzzerEnabled() {
    return enabled;
}

void KBuzzer::setBuzzerEnabled(bool on) {
    if (on != enabled) {
        emit buzzerState(on);
        setLocalSetting(on);
    }
    enabled = on;
    if (!on)
        shutupBuzzer();
}

void KBuzzer::makeSound(int duration, int tone) {
    if (lastSound)
        return;
    if (!enabled) {
        emit allWorkDone();
        return;
    }
    if (hostDrivesBuzzer()) {
        Platform::getInstance()->BuzzerAlarm(tone, duration);
        emit allWorkDone();
        return;
    }
    const KBuzzerQueueItem item = {duration, tone};
    QMutexLocker lock(&mutex);
    queue.append(item);
    workPending = true;
    cond.wakeAll();
}

void KBuzzer::makeSound(AbstractBuzzerInterface::SoundType type) {
    const int index = int(type);
    if (index < 0 || index >= StandardSoundCount)
        return;
    makeSound(StandardSounds[index].duration, StandardSounds[index].frequency);
}

void KBuzzer::setLastSound(bool last) {
    lastSound = last;
}

int KBuzzer::getFrequency(int note, int octave) {
    if (note < 0 || note > 6 || octave < -2 || octave > 2)
        return 0;
    const int tone = base_tone[note];
    return DividerClockHz / (octave >= 1 ? tone << octave : tone >> -octave);
}

void KBuzzer::shutupBuzzer() {
    QMutexLocker lock(&mutex);
    queue.clear();
}

void KBuzzer::run() {
    QMutexLocker lock(&mutex);
    for (;;) {
        processBeep(lock);
        while (!workPending && !stopFlag)
            cond.wait(&mutex);
        if (stopFlag)
            break;
        processBeep(lock);
    }
    lock.unlock();
    emit allWorkDone();
}

/** Plays the queue until it is empty. @p lock is held before and afterwards. */
void KBuzzer::processBeep(QMutexLocker& lock) {
    while (!queue.isEmpty()) {
        const KBuzzerQueueItem item = queue.takeFirst();
        lock.unlock();
        setBuzzerFrequency(item.frequency);
        setBuzzerSwitch(true);
        m_clock.sleepMsecs(quint32(qMax(0, item.duration)));
        setBuzzerSwitch(false);
        lock.relock();
    }
    workPending = false; // a sound queued from here on wakes the thread again
    lock.unlock();
    emit allWorkDone();
    lock.relock();
}

void KBuzzer::setBuzzerCommand(int value) {
    if (!deviceOpened) {
        fd = ::open(QFile::encodeName(panelPaths().buzzer_device).constData(), O_RDWR | O_CLOEXEC);
        deviceOpened = true;
    }
    const QByteArray event = toneEvent(value);
    const ssize_t written = ::write(fd, event.constData(), size_t(event.size()));
    Q_UNUSED(written); // a panel without a buzzer stays silent
}

void KBuzzer::setBuzzerSwitch(bool on) {
    setBuzzerCommand(on ? frequency.load() : 0);
}

void KBuzzer::setBuzzerFrequency(int value) {
    frequency = value;
    frequencyCopy = value;
}

bool KBuzzer::getLocalSetting() {
    if (Platform::getInstance()->isX86HMI())
        return Platform::getInstance()->BuzzerOn();
    const int value = KSetting::getInstance()->getSettingValue(BuzzerSetting);
    qDebug() << "buzzer val " << value;
    return value > 0;
}

void KBuzzer::setLocalSetting(bool on) {
    if (hostDrivesBuzzer())
        Platform::getInstance()->setBuzzerOn(on);
    KSetting::getInstance()->setSettingValue(BuzzerSetting, on);
}
