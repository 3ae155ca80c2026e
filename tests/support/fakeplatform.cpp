#include "tests/support/fakeplatform.h"

#include "runtime/interfaces/platform.h"

FakePlatform& fakePlatform() {
    static FakePlatform fake;
    return fake;
}

Platform* Platform::getInstance() {
    static Platform platform;
    return &platform;
}

bool Platform::isX86HMI() {
    return fakePlatform().x86_hmi;
}

bool Platform::BuzzerOn() {
    return fakePlatform().buzzer_on;
}

void Platform::setBuzzerOn(bool on) {
    fakePlatform().buzzer_on = on;
    fakePlatform().set_buzzer_calls.append(on);
}

void Platform::BuzzerAlarm(int frequency, int duration) {
    fakePlatform().alarms.append(qMakePair(frequency, duration));
}

int Platform::modelCode() {
    return fakePlatform().model_code;
}
