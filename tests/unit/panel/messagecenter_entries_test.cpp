#include "tests/support/notifier.h"
#include "tests/unit/panel/messagepanel.h"

#include "runtime/panel/messagecenteritemwidget.h"

#include <QApplication>
#include <QSet>
#include <QSharedPointer>
#include <QThread>
#include <QTimer>

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <vector>

namespace {

typedef std::vector<std::unique_ptr<Notifier>> Notifiers;

Notifiers senders(const MessagePanel& panel, int count) {
    Notifiers all;
    for (int i = 0; i < count; ++i)
        all.emplace_back(new Notifier(panel));
    return all;
}

void tellAll(const Notifiers& notifiers) {
    for (size_t i = 0; i < notifiers.size(); ++i)
        notifiers[i]->tell(QString::fromLatin1("sender"), QString::number(i));
}

QString entry(const char* text) {
    return QString::fromUtf8(text);
}

/** A place in memory where one sender can follow another. */
class SenderPlace {
public:
    Notifier* build(const MessagePanel& panel) { return new (m_memory) Notifier(panel); }
    void destroy(Notifier* notifier) { notifier->~Notifier(); }

private:
    alignas(Notifier) char m_memory[sizeof(Notifier)];
};

} // namespace

TEST(MessageCenterEntries, JoinTitleAndTextInTwoLines) {
    MessagePanel panel;
    Notifier sender(panel);
    sender.tell("Recipe", "saved");
    EXPECT_EQ(entry("Recipe\nsaved"), panel.text(0));
}

TEST(MessageCenterEntries, TakePlaceMarksInATitleForText) {
    MessagePanel panel;
    Notifier sender(panel);
    sender.tell("100%2", "%1 done");
    EXPECT_EQ(entry("100%2\n%1 done"), panel.text(0));
}

TEST(MessageCenterEntries, ASecondNoticeReplacesTheTextInItsRowAndColor) {
    MessagePanel panel;
    Notifier first(panel);
    Notifier second(panel);
    first.tell("first", "1");
    const QColor color = panel.color(0);
    second.tell("second", "1");
    first.tell("first", "2");
    EXPECT_EQ(2, panel.count());
    EXPECT_EQ(entry("second\n1"), panel.text(0));
    EXPECT_EQ(entry("first\n2"), panel.text(1));
    EXPECT_EQ(color, panel.color(1));
}

TEST(MessageCenterEntries, TheEighthSenderGetsTheFirstColorAgain) {
    MessagePanel panel;
    const Notifiers notifiers = senders(panel, 8);
    tellAll(notifiers);
    QSet<QRgb> different;
    for (int row = 0; row < 8; ++row)
        different << panel.color(row).rgba();
    EXPECT_EQ(7, different.size());
    EXPECT_EQ(panel.color(7), panel.color(0));
}

TEST(MessageCenterEntries, CycleThroughTheColorsInTheirOrder) {
    const QRgb order[] = {0xffffffff, 0xffffffcc, 0xffffcccc, 0xffccffff,
                          0xffccccff, 0xffccffcc, 0xffffcc99};
    MessagePanel panel;
    const Notifiers notifiers = senders(panel, 14);
    tellAll(notifiers);
    int start = 0; // where earlier panels of the process left the cycle
    while (start < 7 && panel.color(13).rgba() != order[start])
        ++start;
    ASSERT_LT(start, 7);
    for (int i = 0; i < 14; ++i)
        EXPECT_EQ(order[(start + i) % 7], panel.color(13 - i).rgba()) << "entry " << i;
}

TEST(MessageCenterEntries, AreWidgetsOf60PixelsInRowsOf61) {
    MessagePanel panel;
    Notifier sender(panel);
    sender.tell("title", "text");
    EXPECT_EQ(QSize(153, 61), panel.list().item(0)->sizeHint());
    EXPECT_EQ(QSize(panel.list().width() - 5, 60), panel.widget(0)->size());
    EXPECT_EQ(61, panel.list().visualItemRect(panel.list().item(0)).height());
}

TEST(MessageCenterEntries, SpanTheListFromTheFirstNoticeOn) {
    MessagePanel panel;
    Notifier sender(panel);
    sender.tell("title", "text");
    EXPECT_GT(panel.widget(0)->width(), 200);
}

TEST(MessageCenterEntries, OfDirectCallsShareOneEntry) {
    MessagePanel panel;
    panel.showMessageAsync(entry("a"), entry("1"), true);
    panel.showMessageAsync(entry("b"), entry("2"), true);
    EXPECT_EQ(1, panel.count());
    EXPECT_EQ(entry("b\n2"), panel.text(0));
}

TEST(MessageCenterEntries, NeverTakeBackTheEntryOfDirectCalls) {
    MessagePanel panel;
    panel.showMessageAsync(entry("a"), entry("1"), true);
    panel.removeMessageAsync();
    EXPECT_EQ(1, panel.count());
}

TEST(MessageCenterEntries, AreTakenBackByTheirSender) {
    MessagePanel panel;
    const Notifiers notifiers = senders(panel, 3);
    tellAll(notifiers);
    notifiers[1]->takeBack();
    EXPECT_EQ(2, panel.count());
    EXPECT_EQ(entry("sender\n2"), panel.text(0));
    EXPECT_EQ(entry("sender\n0"), panel.text(1));
    EXPECT_FALSE(panel.signalsBlocked());
}

TEST(MessageCenterEntries, AreTakenBackInSilenceAndWithoutKeepingThePanelOpen) {
    MessagePanel panel;
    const Notifiers notifiers = senders(panel, 2);
    tellAll(notifiers);
    const ResizeObserver observer(panel);
    const TimerWatch watch(panel.autoHideTimer());
    notifiers[0]->takeBack();
    EXPECT_EQ(1, observer.resized);
    EXPECT_EQ(1, observer.resized_in_silence);
    EXPECT_TRUE(panel.autoHideTimer().isActive());
    EXPECT_FALSE(watch.sawStart());
}

TEST(MessageCenterEntries, AreNotDisturbedByASenderThatTakesBackNothing) {
    MessagePanel panel;
    Notifier sender(panel);
    Notifier silent(panel);
    sender.tell("title", "text");
    silent.takeBack();
    EXPECT_EQ(1, panel.count());
}

TEST(MessageCenterEntries, AreRemovedByTheirButton) {
    MessagePanel panel;
    const Notifiers notifiers = senders(panel, 3);
    tellAll(notifiers);
    panel.clickRemove(1);
    EXPECT_EQ(2, panel.count());
    EXPECT_EQ(entry("sender\n2"), panel.text(0));
    EXPECT_EQ(entry("sender\n0"), panel.text(1));
    EXPECT_FALSE(panel.signalsBlocked());
}

TEST(MessageCenterEntries, AreRemovedInSilence) {
    MessagePanel panel;
    const Notifiers notifiers = senders(panel, 2);
    tellAll(notifiers);
    const ResizeObserver observer(panel);
    panel.clickRemove(0);
    EXPECT_EQ(1, observer.resized);
    EXPECT_EQ(1, observer.resized_in_silence);
}

TEST(MessageCenterEntries, StartAnewAfterARemoval) {
    MessagePanel panel;
    const Notifiers notifiers = senders(panel, 2);
    tellAll(notifiers);
    panel.clickRemove(1);
    notifiers[0]->tell("again", "here");
    EXPECT_EQ(2, panel.count());
    EXPECT_EQ(entry("again\nhere"), panel.text(0));
}

TEST(MessageCenterEntries, StayWhenSomethingElseAsksForRemoval) {
    MessagePanel panel;
    Notifier sender(panel);
    sender.tell("title", "text");
    panel.call("itemWidgetRemoveClicked");
    EXPECT_EQ(1, panel.count());
}

TEST(MessageCenterEntries, AreDroppedWhileNoticesAreRejected) {
    MessagePanel panel;
    Notifier sender(panel);
    EXPECT_FALSE(panel.rejectedMessage());
    panel.setRejectMessage(true);
    EXPECT_TRUE(panel.rejectedMessage());
    sender.tell("title", "text");
    EXPECT_EQ(0, panel.count());
    EXPECT_FALSE(panel.isVisible());
}

TEST(MessageCenterEntries, CanStillBeTakenBackWhileNoticesAreRejected) {
    MessagePanel panel;
    Notifier sender(panel);
    sender.tell("title", "text");
    panel.setRejectMessage(true);
    sender.takeBack();
    EXPECT_EQ(0, panel.count());
}

TEST(MessageCenterEntries, AreAtMost100AndTheOldestGoesFirst) {
    MessagePanel panel;
    const Notifiers notifiers = senders(panel, 102);
    tellAll(notifiers);
    EXPECT_EQ(100, panel.count());
    EXPECT_EQ(entry("sender\n101"), panel.text(0));
    EXPECT_EQ(entry("sender\n2"), panel.text(99));
}

TEST(MessageCenterEntries, ANoticeFromASenderWhoseEntryWasDroppedIsANewEntry) {
    MessagePanel panel;
    const Notifiers notifiers = senders(panel, 101);
    tellAll(notifiers);
    deleteWhatWaits();
    notifiers[0]->tell("back", "again");
    EXPECT_EQ(100, panel.count());
    EXPECT_EQ(entry("back\nagain"), panel.text(0));
    EXPECT_EQ(entry("sender\n2"), panel.text(99));
}

TEST(MessageCenterEntries, ASenderWhoseEntryWasDroppedHasNothingToTakeBack) {
    MessagePanel panel;
    const Notifiers notifiers = senders(panel, 101);
    tellAll(notifiers);
    deleteWhatWaits();
    notifiers[0]->takeBack();
    notifiers[0]->takeBack();
    EXPECT_EQ(100, panel.count());
}

TEST(MessageCenterEntries, OutliveTheirSender) {
    MessagePanel panel;
    {
        Notifier sender(panel);
        sender.tell("last", "words");
    }
    EXPECT_EQ(entry("last\nwords"), panel.text(0));
    panel.clickRemove(0);
    EXPECT_EQ(0, panel.count());
}

TEST(MessageCenterEntries, OfADeletedSenderPassToTheNextSenderAtItsAddress) {
    MessagePanel panel;
    SenderPlace place;
    Notifier* old_sender = place.build(panel);
    old_sender->tell("old", "sender");
    place.destroy(old_sender);
    Notifier* new_sender = place.build(panel);
    new_sender->tell("new", "sender");
    EXPECT_EQ(1, panel.count());
    EXPECT_EQ(entry("new\nsender"), panel.text(0));
    place.destroy(new_sender);
}

TEST(MessageCenterEntries, ASenderAtTheAddressOfADeletedAndDroppedOneStartsAnew) {
    MessagePanel panel;
    SenderPlace place;
    Notifier* old_sender = place.build(panel);
    old_sender->tell("old", "sender");
    place.destroy(old_sender);
    const Notifiers notifiers = senders(panel, 100);
    tellAll(notifiers);
    deleteWhatWaits();
    Notifier* new_sender = place.build(panel);
    new_sender->tell("new", "sender");
    EXPECT_EQ(entry("new\nsender"), panel.text(0));
    EXPECT_EQ(entry("sender\n99"), panel.text(1));
    place.destroy(new_sender);
}

TEST(MessageCenterEntries, ANoticeThatItsSenderDidNotLiveToSeeCountsAsADirectCall) {
    MessagePanel panel;
    {
        Notifier sender(panel, Qt::QueuedConnection);
        sender.tell("last", "words");
    }
    QCoreApplication::sendPostedEvents(&panel, 0);
    EXPECT_EQ(entry("last\nwords"), panel.text(0));
    panel.showMessageAsync(entry("direct"), entry("call"), true);
    EXPECT_EQ(1, panel.count());
}

TEST(MessageCenterEntries, SurviveAStormOfSendersComingAndGoing) {
    MessagePanel panel;
    Notifiers notifiers = senders(panel, 10);
    unsigned random = 1;
    for (int i = 0; i < 3000; ++i) {
        random = random * 1664525u + 1013904223u;
        const size_t which = (random >> 8) % notifiers.size();
        switch (random >> 29) {
        case 0:
            notifiers[which]->takeBack();
            break;
        case 1:
            notifiers[which].reset(new Notifier(panel));
            break;
        case 2:
            if (panel.count() > 0)
                panel.clickRemove(int(which) % panel.count());
            deleteWhatWaits();
            break;
        default:
            notifiers.emplace_back(new Notifier(panel));
            notifiers.back()->tell("storm", "drop");
        }
        ASSERT_LE(panel.count(), 100);
    }
}

TEST(MessageCenterEntries, TheDevelopersSampleSaysTest) {
    MessagePanel panel;
    panel.call("testMessage");
    EXPECT_EQ(entry("test\nsdfsdf"), panel.text(0));
}
