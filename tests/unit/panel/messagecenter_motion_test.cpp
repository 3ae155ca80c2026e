#include "tests/support/messagelog.h"
#include "tests/support/notifier.h"
#include "tests/unit/panel/messagepanel.h"

#include <QTimer>

#include <gtest/gtest.h>

namespace {

/** The panel's places while it slides from @p from to @p to, docked at @p edge. */
struct Slide {
    const char* name;
    int edge;
    QPoint shown;
    QPoint hidden;
    int step; // pixels a tick
};

// The panel is 250 x 200; the way is cut into five whole-pixel steps, and the
// last one makes up for what the division lost.
const Slide slides[] = {
    {"Up", 0, QPoint(149, 0), QPoint(149, 301), 60},
    {"Down", 1, QPoint(149, 300), QPoint(149, 0), 60},
    {"ToTheRight", 2, QPoint(400, 99), QPoint(-150, 99), 110},
    {"ToTheLeft", 3, QPoint(-150, 99), QPoint(401, 99), 110},
};

class SlidingPanel : public ::testing::TestWithParam<Slide> {
protected:
    SlidingPanel() : m_panel(GetParam().edge) {}

    /** @p ticks of the way from one place to the other. */
    static QPoint along(const QPoint& from, const QPoint& to, int ticks) {
        const QPoint way = to - from;
        const QPoint direction(way.x() == 0 ? 0 : way.x() / qAbs(way.x()),
                               way.y() == 0 ? 0 : way.y() / qAbs(way.y()));
        return from + direction * (ticks * GetParam().step);
    }

    void expectSlide(const QPoint& from, const QPoint& to) {
        EXPECT_EQ(from, m_panel.pos());
        for (int tick = 1; tick < 5; ++tick) {
            elapse(m_panel.animTimer());
            EXPECT_EQ(along(from, to, tick), m_panel.pos()) << "tick " << tick;
        }
        elapse(m_panel.animTimer());
        EXPECT_EQ(to, m_panel.pos());
        EXPECT_FALSE(m_panel.animTimer().isActive());
    }

    MessagePanel m_panel;
};

} // namespace

TEST_P(SlidingPanel, ShowsItselfInFiveSteps) {
    m_panel.animatedShow();
    EXPECT_TRUE(m_panel.isVisible());
    EXPECT_TRUE(m_panel.autoHideTimer().isActive());
    expectSlide(GetParam().hidden, GetParam().shown);
}

TEST_P(SlidingPanel, HidesItselfInFiveSteps) {
    m_panel.instantShow();
    m_panel.call("animatedHide");
    EXPECT_FALSE(m_panel.autoHideTimer().isActive());
    expectSlide(GetParam().shown, GetParam().hidden);
}

TEST_P(SlidingPanel, StartsItsSlidesFromTheirEndsWhereverItIs) {
    m_panel.instantShow();
    m_panel.animatedShow();
    expectSlide(GetParam().hidden, GetParam().shown);
    m_panel.call("instantHide");
    m_panel.call("animatedHide");
    expectSlide(GetParam().shown, GetParam().hidden);
}

INSTANTIATE_TEST_SUITE_P(MessageCenterMotion, SlidingPanel, ::testing::ValuesIn(slides),
                         [](const ::testing::TestParamInfo<Slide>& row) {
                             return std::string(row.param.name);
                         });

TEST(MessageCenterMotion, OnlyStartsTheTimersAtAnUnknownEdge) {
    const MessageLog log;
    MessagePanel panel(4);
    panel.animatedShow();
    EXPECT_FALSE(panel.isVisible());
    EXPECT_TRUE(panel.animTimer().isActive());
    EXPECT_TRUE(panel.autoHideTimer().isActive());
}

TEST(MessageCenterMotion, StopsASlideWithoutADirection) {
    const MessageLog log;
    MessagePanel panel(4);
    panel.instantShow();
    panel.call("animatedHide");
    elapse(panel.animTimer());
    EXPECT_FALSE(panel.animTimer().isActive());
    EXPECT_EQ(QPoint(0, 0), panel.pos());
}

TEST(MessageCenterMotion, ANoticeShowsThePanelAtOnceWithoutASlide) {
    for (int instant = 0; instant < 2; ++instant) {
        MessagePanel panel;
        Notifier sender(panel);
        sender.tell("title", "text", instant != 0);
        EXPECT_TRUE(panel.isVisible());
        EXPECT_EQ(QPoint(149, 99), panel.pos());
        EXPECT_FALSE(panel.animTimer().isActive());
    }
}

TEST(MessageCenterMotion, AShownPanelHidesItselfAfterSixSeconds) {
    MessagePanel panel;
    Notifier sender(panel);
    sender.tell("title", "text");
    EXPECT_EQ(6000, panel.autoHideTimer().interval());
    EXPECT_TRUE(panel.autoHideTimer().isSingleShot());
    elapse(panel.autoHideTimer());
    EXPECT_FALSE(panel.isVisible());
    EXPECT_EQ(QPoint(149, 301), panel.pos());
    EXPECT_FALSE(panel.autoHideTimer().isActive());
}

TEST(MessageCenterMotion, ANewNoticeShowsAHiddenPanelAgain) {
    MessagePanel panel;
    Notifier sender(panel);
    sender.tell("title", "text");
    elapse(panel.autoHideTimer());
    sender.tell("title", "more");
    EXPECT_TRUE(panel.isVisible());
    EXPECT_EQ(QPoint(149, 99), panel.pos());
}

TEST(MessageCenterMotion, AnInstantShowEndsASlide) {
    MessagePanel panel;
    panel.animatedShow();
    elapse(panel.animTimer());
    panel.instantShow();
    EXPECT_FALSE(panel.animTimer().isActive());
    EXPECT_EQ(QPoint(149, 0), panel.pos());
}

TEST(MessageCenterMotion, AnInstantHideEndsASlide) {
    MessagePanel panel;
    panel.animatedShow();
    elapse(panel.animTimer());
    panel.call("instantHide");
    EXPECT_FALSE(panel.animTimer().isActive());
    EXPECT_FALSE(panel.isVisible());
    EXPECT_EQ(QPoint(149, 301), panel.pos());
}

TEST(MessageCenterMotion, TogglesBetweenShownAndHidden) {
    MessagePanel panel;
    Notifier sender(panel);
    sender.tell("title", "text");
    panel.toggleShowHide();
    EXPECT_FALSE(panel.isVisible());
    panel.toggleShowHide();
    EXPECT_TRUE(panel.isVisible());
    EXPECT_EQ(QPoint(149, 99), panel.pos());
}

TEST(MessageCenterMotion, AnEmptyPanelCannotBeToggledIntoView) {
    MessagePanel panel;
    panel.toggleShowHide();
    EXPECT_FALSE(panel.isVisible());
}

TEST(MessageCenterMotion, ASlidingPanelCannotBeToggled) {
    MessagePanel panel;
    Notifier sender(panel);
    sender.tell("title", "text");
    panel.animatedShow();
    elapse(panel.animTimer());
    const QPoint halfway = panel.pos();
    panel.toggleShowHide();
    EXPECT_EQ(halfway, panel.pos());
    EXPECT_TRUE(panel.isVisible());
}

TEST(MessageCenterMotion, ATouchInTheTopStripToggles) {
    const QPoint corners[] = {QPoint(0, 0), QPoint(249, 0), QPoint(0, 23), QPoint(249, 23)};
    for (const QPoint& corner : corners) {
        MessagePanel panel;
        Notifier sender(panel);
        sender.tell("title", "text");
        press(panel, corner);
        EXPECT_FALSE(panel.isVisible());
    }
}

TEST(MessageCenterMotion, ATouchBelowTheTopStripDoesNot) {
    const QPoint corners[] = {QPoint(0, 24), QPoint(249, 24), QPoint(1, 99)};
    for (const QPoint& corner : corners) {
        MessagePanel panel;
        Notifier sender(panel);
        sender.tell("title", "text");
        press(panel, corner);
        EXPECT_TRUE(panel.isVisible());
    }
}

TEST(MessageCenterMotion, AClickOnAnEntryStartsTheSixSecondsAnew) {
    MessagePanel panel;
    Notifier sender(panel);
    sender.tell("title", "text");
    const TimerWatch watch(panel.autoHideTimer());
    EXPECT_FALSE(watch.sawStart());
    const QModelIndex index = panel.list().model()->index(0, 0);
    QMetaObject::invokeMethod(&panel.list(), "clicked", Q_ARG(QModelIndex, index));
    EXPECT_TRUE(watch.sawStart());
}

TEST(MessageCenterMotion, ScrollingStartsTheSixSecondsAnew) {
    MessagePanel panel;
    Notifier sender(panel);
    sender.tell("title", "text");
    const TimerWatch watch(panel.autoHideTimer());
    QMetaObject::invokeMethod(&panel.list(), "scrollClicked");
    EXPECT_TRUE(watch.sawStart());
}

TEST(MessageCenterMotion, RemovingAnEntryStartsTheSixSecondsAnew) {
    MessagePanel panel;
    Notifier sender(panel);
    sender.tell("title", "text");
    const TimerWatch watch(panel.autoHideTimer());
    panel.clickRemove(0);
    EXPECT_TRUE(watch.sawStart());
}

TEST(MessageCenterMotion, ScrollingAndRemovingDoNotStartAStoppedTimer) {
    MessagePanel panel;
    Notifier sender(panel);
    sender.tell("title", "text");
    panel.autoHideTimer().stop();
    QMetaObject::invokeMethod(&panel.list(), "scrollClicked");
    panel.clickRemove(0);
    EXPECT_FALSE(panel.autoHideTimer().isActive());
}
