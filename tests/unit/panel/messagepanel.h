#ifndef TESTS_UNIT_PANEL_MESSAGEPANEL_H
#define TESTS_UNIT_PANEL_MESSAGEPANEL_H

#include "runtime/panel/messagecenter.h"
#include "runtime/panel/messagecenterlistwidget.h"

#include <QString>

#include "tests/support/fakeplatform.h"
#include "tests/support/scopedpanelpaths.h"
#include "tests/support/temporarydirectory.h"

class MessageCenterItemWidget;

/** The panel's buzzer in the hands of the tests' Platform; no file of this
 *  machine is touched. */
class SimulatedBuzzer {
public:
    SimulatedBuzzer();
    ~SimulatedBuzzer();

    /** Frequency in Hz and duration in ms of the sounds so far. */
    const QList<QPair<int, int>>& sounds() const { return fakePlatform().alarms; }

private:
    Q_DISABLE_COPY(SimulatedBuzzer)

    TemporaryDirectory m_directory;
    ScopedPanelPaths m_paths;
};

/** The message panel with the eyes and fingers of an operator. */
class MessagePanel : public MessageCenter {
public:
    explicit MessagePanel(int dock_edge = 0, int max_height = 300);
    ~MessagePanel() override;

    MessageCenterListWidget& list() const;
    int count() const { return list().count(); }
    MessageCenterItemWidget* widget(int row) const;
    QString text(int row) const;
    QColor color(int row) const;

    /** Clicks the "X" of a row. */
    void clickRemove(int row);

    /** Calls a slot by name, also a private one. */
    void call(const char* slot);

    QTimer& animTimer() const { return timerOf(100); }
    QTimer& autoHideTimer() const { return timerOf(6000); }

private:
    QTimer& timerOf(int msecs) const;

    SimulatedBuzzer m_buzzer;
};

/** Puts a finger on a point of a widget. */
void press(QWidget& widget, const QPoint& point);

/** Makes a timer's time come. */
void elapse(QTimer& timer);

/** Tells whether @p timer was started, or started anew, while it lives. */
class TimerWatch {
public:
    explicit TimerWatch(QTimer& timer);
    ~TimerWatch();
    bool sawStart() const;

private:
    Q_DISABLE_COPY(TimerWatch)

    QTimer& m_timer;
    QObject& m_object; // the timer too: QTimer hides what every object has
    const int m_mark;  // a timer of the same object and interval, started now
};

/** Counts a panel's changes of size, and those of them that it makes in silence. */
class ResizeObserver : public QObject {
public:
    explicit ResizeObserver(MessagePanel& panel) { panel.installEventFilter(this); }

    int resized = 0;
    int resized_in_silence = 0;

protected:
    bool eventFilter(QObject* panel, QEvent* event) override;
};

/** Carries out what deleteLater() put off. */
void deleteWhatWaits();

/** Where the panels dock: the corners are (100,200) and (399,299). */
extern const QRect dock_area;
extern const QSize panel_size;
extern const int panel_color;

#endif
