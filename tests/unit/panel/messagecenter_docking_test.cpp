#include "tests/support/messagelog.h"
#include "tests/support/notifier.h"
#include "tests/unit/panel/messagepanel.h"

#include <QSharedPointer>
#include <QTimer>

#include <gtest/gtest.h>

#include <vector>

namespace {

struct Docking {
    const char* name;
    int edge;
    QPoint shown;
    QPoint hidden;
};

/** For the panel's first size, 250 x 200, at (100,200)-(399,299). */
const Docking dockings[] = {
    {"Above", 0, QPoint(149, 0), QPoint(149, 301)},
    {"Below", 1, QPoint(149, 300), QPoint(149, 0)},
    {"Right", 2, QPoint(400, 99), QPoint(-150, 99)},
    {"Left", 3, QPoint(-150, 99), QPoint(401, 99)},
};

class DockedPanel : public ::testing::TestWithParam<Docking> {};

/** A panel with one entry of each of @p count senders. */
class FilledPanel {
public:
    FilledPanel(int count, int max_height) : panel(0, max_height) {
        for (int i = 0; i < count; ++i) {
            senders.push_back(QSharedPointer<Notifier>(new Notifier(panel)));
            senders.back()->tell("title", "text");
        }
    }

    MessagePanel panel;
    std::vector<QSharedPointer<Notifier>> senders;
};

int heightWith(int count, int max_height) {
    return FilledPanel(count, max_height).panel.height();
}

} // namespace

TEST_P(DockedPanel, StartsInvisibleAtItsHiddenPlace) {
    const MessagePanel panel(GetParam().edge);
    EXPECT_FALSE(panel.isVisible());
    EXPECT_EQ(GetParam().hidden, panel.pos());
}

TEST_P(DockedPanel, IsShownBesideTheDockingRectangle) {
    MessagePanel panel(GetParam().edge);
    panel.instantShow();
    EXPECT_EQ(GetParam().shown, panel.pos());
}

INSTANTIATE_TEST_SUITE_P(MessageCenterDocking, DockedPanel, ::testing::ValuesIn(dockings),
                         [](const ::testing::TestParamInfo<Docking>& row) {
                             return std::string(row.param.name);
                         });

TEST(MessageCenterDocking, WondersAboutAnUnknownEdge) {
    const MessageLog log;
    MessagePanel panel(4);
    EXPECT_EQ(QString::fromLatin1("WTF? Where should I be?"), log.messages().value(0));
    EXPECT_EQ(QPoint(-250, 0), panel.pos());
    panel.instantShow();
    EXPECT_EQ(QPoint(0, 0), panel.pos());
}

TEST(MessageCenterDocking, TakesANegativeEdgeForUnknownToo) {
    const MessageLog log;
    const MessagePanel panel(-1);
    EXPECT_EQ(QPoint(-250, 0), panel.pos());
}

TEST(MessageCenterDocking, IsAsHighAsThreeRowsWhenTheyFit) {
    EXPECT_EQ(223, heightWith(3, 300));
}

TEST(MessageCenterDocking, HoldsWholeRowsOnlyWhenNotAllFit) {
    EXPECT_EQ(284, heightWith(5, 300));
    EXPECT_EQ(284, heightWith(12, 300));
}

TEST(MessageCenterDocking, StaysShownWhenItGrows) {
    FilledPanel filled(1, 300);
    EXPECT_EQ(QPoint(149, 200 - 101), filled.panel.pos());
    Notifier another(filled.panel);
    another.tell("title", "text");
    EXPECT_EQ(QPoint(149, 200 - 162), filled.panel.pos());
}

TEST(MessageCenterDocking, StaysShownWhenItShrinks) {
    FilledPanel filled(3, 300);
    filled.panel.clickRemove(1);
    EXPECT_EQ(QPoint(149, 200 - 162), filled.panel.pos());
    EXPECT_TRUE(filled.panel.isVisible());
}

TEST(MessageCenterDocking, StaysHiddenWhenItShrinks) {
    MessagePanel panel(2);
    Notifier first(panel);
    Notifier second(panel);
    first.tell("title", "text");
    second.tell("title", "text");
    panel.toggleShowHide();
    first.takeBack();
    EXPECT_EQ(QPoint(100 - 250, 299 - 101), panel.pos());
    EXPECT_FALSE(panel.isVisible());
}

TEST(MessageCenterDocking, HidesWhenItsLastEntryIsRemovedWhileShown) {
    FilledPanel filled(1, 300);
    filled.panel.clickRemove(0);
    EXPECT_EQ(40, filled.panel.height());
    EXPECT_EQ(QPoint(149, 301), filled.panel.pos());
}

TEST(MessageCenterDocking, IsParkedAtItsHiddenPlaceByEveryResize) {
    MessagePanel panel;
    panel.animatedShow();
    elapse(panel.animTimer());
    panel.setFixedSize(200, 180);
    EXPECT_EQ(QPoint(399 - 200, 301), panel.pos());
    EXPECT_FALSE(panel.animTimer().isActive());
}

TEST(MessageCenterDocking, KnowsItsPlacesBeforeItIsShownAndIsNotResizedForThat) {
    MessagePanel panel;
    ResizeObserver observer(panel);
    panel.instantShow();
    EXPECT_EQ(0, observer.resized);
}

TEST(MessageCenterDocking, StaysParkedWhenItGrowsWhileItSlides) {
    MessagePanel panel;
    Notifier first(panel);
    Notifier second(panel);
    first.tell("title", "text");
    second.tell("title", "text");
    panel.animatedShow();
    elapse(panel.animTimer());
    second.takeBack();
    EXPECT_EQ(QPoint(149, 301), panel.pos());
}

TEST(MessageCenterDocking, HidesWhenItsLastEntryIsRemovedThoughItsHeightStays) {
    FilledPanel filled(1, 0);
    EXPECT_EQ(QPoint(149, 200 - 40), filled.panel.pos());
    filled.panel.clickRemove(0);
    EXPECT_EQ(40, filled.panel.height());
    EXPECT_EQ(QPoint(149, 301), filled.panel.pos());
}
