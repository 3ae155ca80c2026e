#ifndef TESTS_SUPPORT_FAKEPLATFORM_H
#define TESTS_SUPPORT_FAKEPLATFORM_H

#include <QList>
#include <QPair>

/** What the tests' Platform answers and what it was asked. One object, reached
 *  through fakePlatform(); tests reset it. */
struct FakePlatform {
    bool x86_hmi = false;
    bool buzzer_on = true;
    int model_code = 0;
    QList<bool> set_buzzer_calls;
    QList<QPair<int, int>> alarms; // frequency Hz, duration ms
};

FakePlatform& fakePlatform();

#endif
