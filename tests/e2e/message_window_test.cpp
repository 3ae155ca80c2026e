// The message panel as a real window of a real X server, seen through pictures
// of the whole screen. The pictures stay in the build folder.
#include "tests/support/fakeplatform.h"
#include "tests/support/notifier.h"
#include "tests/support/scopedpanelpaths.h"
#include "tests/support/temporarydirectory.h"

#include "runtime/panel/kbuzzer.h"
#include "runtime/panel/messagecenter.h"

#include <QApplication>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QThread>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <vector>

namespace {

constexpr QRgb DesktopColor = 0xff263442;
constexpr QRgb BarColor = 0xff3d5166;
constexpr QRgb PanelColor = 0xffd6dde4;
const QRect Bar(0, 400, 800, 56); // the panel docks above it
constexpr QSize PanelSize(360, 200);

QString text(const char* utf8) {
    return QString::fromUtf8(utf8);
}

/** Handles events until @p condition holds; ctest ends a test that waits in vain. */
void waitUntil(const std::function<bool()>& condition) {
    while (!condition())
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 50);
}

/** The whole screen, as the X server shows it. */
QImage screenNow() {
    return QApplication::primaryScreen()->grabWindow(0).toImage().convertToFormat(
        QImage::Format_RGB32);
}

/** Waits until the screen shows @p color at @p point. */
void waitForColor(const QPoint& point, QRgb color) {
    waitUntil([&] { return screenNow().pixel(point) == color; });
}

/** The panel above a bar on an empty desktop. */
class MessageWindow : public ::testing::Test {
protected:
    MessageWindow() : m_paths(m_directory.path()) {
        fakePlatform() = FakePlatform();
        fakePlatform().x86_hmi = true;
        KBuzzer::getInstance()->setBuzzerEnabled(true);
        m_desktop.setGeometry(QApplication::primaryScreen()->geometry());
        m_desktop.setPalette(QColor(DesktopColor));
        m_bar.setGeometry(Bar);
        m_bar.setPalette(QColor(BarColor));
        m_bar.setAutoFillBackground(true);
        m_desktop.show();
        panel.reset(
            MessageCenter::initInstance(QSize(800, 340), PanelSize, 0, Bar, int(PanelColor)));
        list = panel->findChild<QListWidget*>();
        waitForColor(Bar.center(), BarColor);
    }

    /** Waits until the panel is seen in its place, its height fitting its entries. */
    void waitForPanel(int height) {
        waitUntil([&] { return panel->height() == height; });
        waitForColor(strip(), PanelColor);
        EXPECT_EQ(
            QRect(Bar.right() - PanelSize.width(), Bar.top() - height, PanelSize.width(), height),
            panel->geometry());
    }

    /** A point of the panel's touch strip. */
    QPoint strip() const {
        return QPoint(Bar.right() - PanelSize.width() / 2, Bar.top() - panel->height() + 10);
    }

    QString entry(int row) const {
        return list->itemWidget(list->item(row))->findChild<QLabel*>()->text();
    }

    QPushButton* removeButton(int row) const {
        return list->itemWidget(list->item(row))->findChild<QPushButton*>();
    }

    /** The list's own label and arrow buttons that can be seen now. */
    template <typename Part>
    QList<Part*> visibleParts() const {
        QList<Part*> visible;
        for (Part* part : list->findChildren<Part*>(QString(), Qt::FindDirectChildrenOnly)) {
            if (part->isVisible())
                visible << part;
        }
        return visible;
    }

    void tell(int count) {
        for (int i = 0; i < count; ++i) {
            senders.push_back(std::make_unique<Notifier>(*panel));
            senders.back()->tell(text("Recipe transfer 配方传输"),
                                 text("Program %1 saved 程序 %1 已保存").arg(i + 1));
        }
    }

    /** Does the slide's steps without waiting for its timer. */
    void slideUntilAt(int y) {
        while (panel->y() != y)
            ASSERT_TRUE(QMetaObject::invokeMethod(panel.get(), "timerOut"));
    }

    static void keep(const char* name) {
        QTest::qWait(0);
        ASSERT_TRUE(screenNow().save(text(SCREENSHOT_DIR "/%1.png").arg(text(name))));
    }

    std::unique_ptr<MessageCenter> panel;
    QListWidget* list = nullptr; // a part of the panel
    std::vector<std::unique_ptr<Notifier>> senders;

private:
    TemporaryDirectory m_directory;
    ScopedPanelPaths m_paths;
    QWidget m_desktop;
    QWidget m_bar{&m_desktop};
};

/** Sends @p count notices from a thread of its own. */
class NoticeThread : public QThread {
public:
    NoticeThread(const MessageCenter& panel, const char* title, int count)
        : m_title(text(title)), m_count(count), m_notifier(panel) {
        m_notifier.moveToThread(this);
    }
    ~NoticeThread() override { wait(); }

protected:
    void run() override {
        for (int i = 1; i <= m_count; ++i)
            m_notifier.tell(m_title, text("%1 / %2").arg(i).arg(m_count));
    }

private:
    const QString m_title;
    const int m_count;
    Notifier m_notifier;
};

} // namespace

TEST_F(MessageWindow, ShowsNoticesFromThreeThreads) {
    const char* const titles[] = {"USB stick", "配方传输", "Controller 控制器"};
    std::vector<std::unique_ptr<NoticeThread>> threads;
    for (const char* title : titles) {
        threads.push_back(std::make_unique<NoticeThread>(*panel, title, 200));
        threads.back()->start();
    }
    waitUntil([&] {
        int complete = 0;
        for (int row = 0; row < list->count(); ++row)
            complete += entry(row).endsWith(text("\n200 / 200"));
        return complete == 3;
    });
    EXPECT_EQ(3, list->count());
    waitForPanel(3 * 61 + 40);
    keep("three_threads");
}

TEST_F(MessageWindow, StaysInItsPlaceWhenManySendersSpeakAtOnce) {
    tell(30);
    waitForPanel(4 * 61 + 40);
    const QPoint place = panel->pos();
    QTest::qWait(0);
    waitForColor(strip(), PanelColor);
    EXPECT_EQ(place, panel->pos());
}

TEST_F(MessageWindow, ScrollsByItsArrows) {
    tell(12);
    waitForPanel(4 * 61 + 40);
    ASSERT_EQ(1, visibleParts<QPushButton>().size());
    EXPECT_EQ(text("1/12"), visibleParts<QLabel>().value(0)->text());
    keep("scroll_top");
    QTest::mouseClick(visibleParts<QPushButton>().value(0), Qt::LeftButton);
    ASSERT_EQ(2, visibleParts<QPushButton>().size());
    EXPECT_EQ(text("5/12"), visibleParts<QLabel>().value(0)->text());
    keep("scroll_middle");
    QTest::mouseClick(visibleParts<QPushButton>().value(1), Qt::LeftButton);
    ASSERT_EQ(1, visibleParts<QPushButton>().size());
    EXPECT_EQ(text("9/12"), visibleParts<QLabel>().value(0)->text());
    keep("scroll_end");
}

TEST_F(MessageWindow, RemovesAnEntryWithAClick) {
    tell(3);
    waitForPanel(3 * 61 + 40);
    keep("before_removal");
    QTest::mouseClick(removeButton(1), Qt::LeftButton);
    waitForPanel(2 * 61 + 40);
    EXPECT_EQ((QList<QPair<int, int>>() << qMakePair(2900, 100)), fakePlatform().alarms);
    EXPECT_TRUE(entry(0).contains(text("Program 3")));
    EXPECT_TRUE(entry(1).contains(text("Program 1")));
    keep("after_removal");
}

TEST_F(MessageWindow, HidesAndShowsAtATouchOfItsStrip) {
    tell(2);
    waitForPanel(2 * 61 + 40);
    const QPoint seen = strip();
    QTest::mouseClick(panel.get(), Qt::LeftButton, Qt::NoModifier, QPoint(100, 10));
    waitForColor(seen, DesktopColor);
    EXPECT_FALSE(panel->isVisible());
    keep("hidden");
    panel->toggleShowHide();
    waitForPanel(2 * 61 + 40);
    keep("shown_again");
}

TEST_F(MessageWindow, SlidesAwayAndUpAgain) {
    tell(2);
    waitForPanel(2 * 61 + 40);
    const QPoint seen = strip();
    ASSERT_TRUE(QMetaObject::invokeMethod(panel.get(), "animatedHide"));
    slideUntilAt(Bar.bottom() + 2);
    waitForColor(seen, DesktopColor);
    keep("slid_away");
    panel->animatedShow();
    slideUntilAt(Bar.top() - panel->height());
    waitForPanel(2 * 61 + 40);
}

TEST_F(MessageWindow, WritesChineseWithGlyphsOfItsOwn) {
    tell(1);
    waitForPanel(61 + 40);
    QLabel& label = *list->itemWidget(list->item(0))->findChild<QLabel*>();
    label.setText(text("配"));
    const QImage first = label.grab().toImage();
    label.setText(text("存"));
    EXPECT_NE(first, label.grab().toImage()); // a missing glyph is the same box every time
}
