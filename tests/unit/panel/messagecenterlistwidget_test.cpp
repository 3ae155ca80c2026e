#include "tests/support/notifier.h"
#include "tests/unit/panel/messagepanel.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QResizeEvent>
#include <QScrollBar>
#include <QStringList>
#include <QTimer>

#include <gtest/gtest.h>

#include "runtime/panel/qtguicompat.h"

#include <memory>
#include <vector>

namespace {

/** What the list's own children show. */
struct ListParts {
    explicit ListParts(const MessageCenterListWidget& widget) : list(widget) {
        const QObjectList& all = list.children();
        QList<QPushButton*> found;
        for (int i = 0; i < all.size(); ++i) {
            if (QPushButton* button = qobject_cast<QPushButton*>(all[i]))
                found << button;
            else if (QLabel* text = qobject_cast<QLabel*>(all[i]))
                label = text;
        }
        up = found.value(0);
        down = found.value(1);
    }

    const MessageCenterListWidget& list;
    QPushButton* up = nullptr;
    QPushButton* down = nullptr;
    QLabel* label = nullptr;
};

/** Four rows of ten fit into this panel. */
class LongList : public ::testing::Test {
protected:
    LongList() : parts(panel.list()) {
        for (int i = 0; i < 10; ++i)
            tell();
    }

    void tell() {
        senders.emplace_back(new Notifier(panel));
        senders.back()->tell("title", "text");
    }

    QString place() const { return parts.label->text(); }

    MessagePanel panel;
    ListParts parts;
    std::vector<std::unique_ptr<Notifier>> senders;
};

/** Writes down the wheel turns that it gets instead of scrolling. */
class TurnedList : public MessageCenterListWidget {
public:
    QStringList turns; // such as "at 0,0 by -200"

protected:
    void wheelEvent(QWheelEvent* event) override {
#if PANEL_QT4
        const QPoint place = event->pos();
        const int delta = event->orientation() == Qt::Vertical ? event->delta() : 0;
#else
        const QPoint place = event->position().toPoint();
        const int delta = event->angleDelta().y();
        EXPECT_EQ(0, event->angleDelta().x());
        EXPECT_EQ(QPointF(), event->globalPosition());
        EXPECT_EQ(QPoint(), event->pixelDelta());
        EXPECT_EQ(Qt::NoScrollPhase, event->phase());
        EXPECT_FALSE(event->inverted());
#endif
        EXPECT_EQ(Qt::NoButton, event->buttons());
        EXPECT_EQ(Qt::NoModifier, event->modifiers());
        turns << QString::fromLatin1("at %1,%2 by %3").arg(place.x()).arg(place.y()).arg(delta);
    }
};

/** A list of its own with entries of 60 pixels in rows as high. */
class FilledList : public MessageCenterListWidget {
public:
    explicit FilledList(int entries) {
        for (int row = 0; row < entries; ++row) {
            addItem(QString());
            QWidget* const entry = new QWidget;
            entry->setFixedSize(100, 60);
            item(row)->setSizeHint(entry->size());
            setItemWidget(item(row), entry);
        }
    }
};

/** Whether two entries overflow a list of @p height. */
bool twoEntriesOverflow(int height) {
    FilledList list(2);
    list.resize(200, height);
    list.determineScrollVisible();
    return ListParts(list).label->isVisibleTo(&list);
}

QString text(const char* latin) {
    return QString::fromLatin1(latin);
}

} // namespace

TEST(MessageCenterListWidget, HidesItsArrowsAndItsLabelAtFirst) {
    MessageCenterListWidget list;
    list.show();
    const ListParts parts(list);
    EXPECT_FALSE(parts.up->isVisible());
    EXPECT_FALSE(parts.down->isVisible());
    EXPECT_FALSE(parts.label->isVisible());
    EXPECT_FALSE(parts.up->icon().isNull());
    EXPECT_FALSE(parts.down->icon().isNull());
    EXPECT_FALSE(parts.up->icon().pixmap(16, 16).isNull());
    EXPECT_FALSE(parts.down->icon().pixmap(16, 16).isNull());
    EXPECT_TRUE(parts.label->autoFillBackground());
    EXPECT_EQ(Qt::AlignRight | Qt::AlignVCenter, parts.label->alignment());
}

TEST(MessageCenterListWidget, PutsItsArrowsAcrossTheTopAndTheBottom) {
    MessageCenterListWidget list;
    QResizeEvent event(QSize(200, 150), QSize());
    QApplication::sendEvent(list.viewport(), &event);
    const ListParts parts(list);
    EXPECT_EQ(QRect(0, 0, 203, 30), parts.up->geometry());
    EXPECT_EQ(QRect(0, 125, 203, 30), parts.down->geometry());
    EXPECT_EQ(QRect(144, 125, 60, 30), parts.label->geometry());
}

TEST(MessageCenterListWidget, NeverScrollsByItselfNorSelectsNorEdits) {
    const MessagePanel panel;
    const MessageCenterListWidget& list = panel.list();
    EXPECT_EQ(Qt::ScrollBarAlwaysOff, list.verticalScrollBarPolicy());
    EXPECT_EQ(Qt::ScrollBarAlwaysOff, list.horizontalScrollBarPolicy());
    EXPECT_FALSE(list.hasAutoScroll());
    EXPECT_EQ(QAbstractItemView::NoEditTriggers, list.editTriggers());
    EXPECT_EQ(QAbstractItemView::NoSelection, list.selectionMode());
    EXPECT_EQ(QAbstractItemView::ScrollPerItem, list.verticalScrollMode());
    EXPECT_EQ(QAbstractItemView::ScrollPerPixel, list.horizontalScrollMode());
    EXPECT_EQ(QListView::ListMode, list.viewMode());
}

TEST(MessageCenterListWidget, NeedsNoArrowsForOneEntryHoweverLowItIs) {
    MessagePanel panel(0, 0);
    Notifier sender(panel);
    sender.tell("title", "text");
    EXPECT_LT(panel.list().height(), 60);
    EXPECT_FALSE(ListParts(panel.list()).label->isVisible());
}

TEST(MessageCenterListWidget, NeedsNoArrowsWhileAllEntriesFit) {
    MessagePanel panel;
    Notifier first(panel);
    Notifier second(panel);
    first.tell("title", "text");
    second.tell("title", "text");
    const ListParts parts(panel.list());
    EXPECT_FALSE(parts.up->isVisible());
    EXPECT_FALSE(parts.down->isVisible());
    EXPECT_FALSE(parts.label->isVisible());
}

TEST(MessageCenterListWidget, NeedsNoArrowsForRowsWithoutWidgets) {
    MessageCenterListWidget list;
    list.resize(100, 20);
    list.addItem(text("a"));
    list.addItem(text("b"));
    list.show();
    list.determineScrollVisible();
    EXPECT_FALSE(ListParts(list).label->isVisible());
}

TEST(MessageCenterListWidget, NeedsArrowsWhenItIsLowerThanItsEntries) {
    EXPECT_FALSE(twoEntriesOverflow(121));
    EXPECT_FALSE(twoEntriesOverflow(120));
    EXPECT_TRUE(twoEntriesOverflow(119));
}

TEST(MessageCenterListWidget, HasLessToScrollWhenItIsHigher) {
    FilledList list(10);
    list.resize(200, 130);
    list.show();
    const int low = list.verticalScrollBar()->maximum();
    list.resize(200, 310);
    EXPECT_EQ(low - 3, list.verticalScrollBar()->maximum());
}

TEST(MessageCenterListWidget, TurnsItsWheelBy200ForAnArrow) {
    TurnedList list;
    const ListParts parts(list);
    parts.down->click();
    parts.up->click();
    EXPECT_EQ(QStringList() << text("at 0,0 by -200") << text("at 0,0 by 200"), list.turns);
}

TEST_F(LongList, OffersTheWayDownFromItsTop) {
    EXPECT_FALSE(parts.up->isVisible());
    EXPECT_TRUE(parts.down->isVisible());
    EXPECT_TRUE(parts.label->isVisible());
    EXPECT_EQ(text("1/10"), place());
}

TEST_F(LongList, OffersBothWaysInItsMiddle) {
    parts.down->click();
    EXPECT_TRUE(parts.up->isVisible());
    EXPECT_TRUE(parts.down->isVisible());
    EXPECT_EQ(text("5/10"), place());
}

TEST_F(LongList, OffersTheWayUpFromItsEnd) {
    parts.down->click();
    parts.down->click();
    EXPECT_TRUE(parts.up->isVisible());
    EXPECT_FALSE(parts.down->isVisible());
    EXPECT_EQ(text("7/10"), place());
}

TEST_F(LongList, ComesBackToItsTop) {
    parts.down->click();
    parts.up->click();
    EXPECT_FALSE(parts.up->isVisible());
    EXPECT_EQ(text("1/10"), place());
}

TEST_F(LongList, FollowsARealWheelToo) {
    QWheelEvent turn = verticalWheelTurn(-120);
    QApplication::sendEvent(panel.list().viewport(), &turn);
    EXPECT_EQ(text("4/10"), place());
}

TEST_F(LongList, AnArrowKeepsThePanelOpen) {
    const TimerWatch watch(panel.autoHideTimer());
    EXPECT_FALSE(watch.sawStart());
    parts.down->click();
    EXPECT_TRUE(watch.sawStart());
}

TEST_F(LongList, CountsNewEntriesInItsLabel) {
    tell();
    EXPECT_EQ(text("1/11"), place());
}

TEST_F(LongList, CountsAtMost100EntriesInItsLabel) {
    while (senders.size() < 101)
        tell();
    EXPECT_EQ(text("1/100"), place());
}

TEST_F(LongList, CountsAnewWhenItsPanelFitsItsSize) {
    delete panel.list().takeItem(9);
    panel.adjustSize();
    EXPECT_EQ(text("1/9"), place());
}

TEST_F(LongList, CountsAnewWhenSomethingElseAsksForRemoval) {
    delete panel.list().takeItem(9);
    panel.call("itemWidgetRemoveClicked");
    EXPECT_EQ(text("1/9"), place());
}

TEST_F(LongList, CountsFromTheFirstRowThatIsSeenWhole) {
    panel.list().setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    panel.list().verticalScrollBar()->setValue(30);
    panel.list().determineScrollVisible();
    EXPECT_EQ(text("2/10"), place());
}

TEST_F(LongList, TellsZeroWhenEveryRowLiesAboveItsViewport) {
    MessageCenterListWidget& list = panel.list();
    list.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    list.verticalScrollBar()->setMaximum(10000);
    list.verticalScrollBar()->setValue(10000);
    list.determineScrollVisible();
    EXPECT_EQ(text("0/10"), place());
}

TEST_F(LongList, TakesItsArrowsAwayWhenTheRestFits) {
    while (panel.count() > 4)
        panel.clickRemove(0);
    EXPECT_FALSE(parts.down->isVisible());
    EXPECT_FALSE(parts.label->isVisible());
}
