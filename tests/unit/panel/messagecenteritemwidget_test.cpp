#include "runtime/panel/messagecenteritemwidget.h"

#include "tests/unit/panel/messagepanel.h"
#include "tests/unit/panel/signalcounter.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include <gtest/gtest.h>

namespace {

QString text(const char* utf8) {
    return QString::fromUtf8(utf8);
}

/** An entry and its parts by their names. */
struct Entry {
    Entry()
        : label(widget.findChild<QLabel*>(text("label_msg")))
        , button(widget.findChild<QPushButton*>(text("pushButton_remove"))) {}

    MessageCenterItemWidget widget;
    QLabel* label;
    QPushButton* button;
};

} // namespace

TEST(MessageCenterItemWidget, IsBuiltToItsForm) {
    const Entry entry;
    EXPECT_EQ(QSize(153, 61), entry.widget.size());
    EXPECT_EQ(text("Form"), entry.widget.windowTitle());
    ASSERT_NE(nullptr, entry.label);
    EXPECT_TRUE(entry.label->wordWrap());
    EXPECT_EQ(text("TextLabel"), entry.label->text());
    ASSERT_NE(nullptr, entry.button);
    EXPECT_EQ(text("X"), entry.button->text());
    EXPECT_EQ(QSize(40, 60), entry.button->minimumSize());
    EXPECT_EQ(QSize(40, 60), entry.button->maximumSize());
    EXPECT_EQ(text("horizontalLayout_2"), entry.widget.layout()->objectName());
    EXPECT_EQ(QMargins(), entry.widget.layout()->contentsMargins());
}

TEST(MessageCenterItemWidget, HasItsButtonOnTheRight) {
    Entry entry;
    entry.widget.layout()->activate();
    EXPECT_EQ(QRect(113, 0, 40, 60), entry.button->geometry());
    EXPECT_LE(entry.label->geometry().right(), 113);
}

TEST(MessageCenterItemWidget, WritesInUnifontAndItsButtonInAharoni) {
    const Entry entry;
    EXPECT_EQ(text("unifont"), entry.widget.font().family());
    EXPECT_EQ(text("unifont"), entry.label->font().family());
    EXPECT_EQ(8, entry.label->font().pointSize());
    EXPECT_TRUE(entry.label->font().bold());
    EXPECT_EQ(text("Aharoni"), entry.button->font().family());
    EXPECT_TRUE(entry.button->font().bold());
}

TEST(MessageCenterItemWidget, ShowsItsMessage) {
    Entry entry;
    entry.widget.setMessage(text("配方\n已保存"));
    EXPECT_EQ(text("配方\n已保存"), entry.label->text());
}

TEST(MessageCenterItemWidget, IsAsHighAsItsButton) {
    const Entry entry;
    EXPECT_EQ(60, entry.widget.getHeight());
}

TEST(MessageCenterItemWidget, ClicksOnceWhenItsButtonGoesDown) {
    const SimulatedBuzzer buzzer;
    const Entry entry;
    const SignalCounter removals(&entry.widget, SIGNAL(removeClicked()));
    press(*entry.button, entry.button->rect().center());
    EXPECT_EQ((QList<QPair<int, int>>() << qMakePair(2900, 100)), buzzer.sounds());
    EXPECT_EQ(0, removals.value());
}

TEST(MessageCenterItemWidget, AsksForItsRemovalWhenItsButtonIsClicked) {
    const SimulatedBuzzer buzzer;
    const Entry entry;
    const SignalCounter removals(&entry.widget, SIGNAL(removeClicked()));
    entry.button->click();
    EXPECT_EQ(1, buzzer.sounds().size());
    EXPECT_EQ(1, removals.value());
}
