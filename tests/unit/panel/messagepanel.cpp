#include "tests/unit/panel/messagepanel.h"

#include "runtime/panel/kbuzzer.h"
#include "runtime/panel/messagecenteritemwidget.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QTimer>
#include <QTimerEvent>

#include <gtest/gtest.h>

#include "runtime/base/qtcompat.h"

const QRect dock_area(100, 200, 300, 100);
const QSize panel_size(250, 200);
const int panel_color = int(0xffd0d8e0);

SimulatedBuzzer::SimulatedBuzzer() : m_paths(m_directory.path()) {
    fakePlatform() = FakePlatform();
    fakePlatform().x86_hmi = true;
    KBuzzer::getInstance()->setBuzzerEnabled(true);
}

SimulatedBuzzer::~SimulatedBuzzer() {
    fakePlatform() = FakePlatform();
}

MessagePanel::MessagePanel(int dock_edge, int max_height)
    : MessageCenter(QSize(300, max_height), panel_size, dock_edge, dock_area, panel_color) {}

MessagePanel::~MessagePanel() {
    deleteWhatWaits();
}

MessageCenterListWidget& MessagePanel::list() const {
    return *findChild<MessageCenterListWidget*>();
}

MessageCenterItemWidget* MessagePanel::widget(int row) const {
    return static_cast<MessageCenterItemWidget*>(list().itemWidget(list().item(row)));
}

QString MessagePanel::text(int row) const {
    return widget(row)->findChild<QLabel*>()->text();
}

QColor MessagePanel::color(int row) const {
    return list().item(row)->background().color();
}

void MessagePanel::clickRemove(int row) {
    widget(row)->findChild<QPushButton*>()->click();
}

void MessagePanel::call(const char* slot) {
    ASSERT_TRUE(QMetaObject::invokeMethod(this, slot)) << slot;
}

QTimer& MessagePanel::timerOf(int msecs) const {
    const QList<QTimer*> timers = findChildren<QTimer*>();
    int i = 0;
    while (i < timers.size() && !(timers[i]->interval() == msecs && timers[i]->parent() == this))
        ++i;
    if (i == timers.size())
        qFatal("the panel has no timer of %d ms", msecs);
    return *timers[i];
}

void press(QWidget& widget, const QPoint& point) {
    QMouseEvent event(QEvent::MouseButtonPress, point, Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

void elapse(QTimer& timer) {
    ASSERT_TRUE(timer.isActive());
    QTimerEvent event(timer.timerId());
    QApplication::sendEvent(&timer, &event);
}

TimerWatch::TimerWatch(QTimer& timer)
    : m_timer(timer), m_object(timer), m_mark(m_object.startTimer(timer.interval())) {}

TimerWatch::~TimerWatch() {
    m_object.killTimer(m_mark);
}

/** The event dispatcher lists an object's timers in the order of their ends. */
bool TimerWatch::sawStart() const {
    const QList<QAbstractEventDispatcher::TimerInfo> timers =
        QAbstractEventDispatcher::instance()->registeredTimers(&m_timer);
#if PANEL_QT4
    return m_timer.isActive() && timers.last().first == m_timer.timerId();
#else
    return m_timer.isActive() && timers.last().timerId == m_timer.timerId();
#endif
}

bool ResizeObserver::eventFilter(QObject* panel, QEvent* event) {
    if (event->type() == QEvent::Resize) {
        ++resized;
        resized_in_silence += panel->signalsBlocked();
    }
    return false;
}

void deleteWhatWaits() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}
