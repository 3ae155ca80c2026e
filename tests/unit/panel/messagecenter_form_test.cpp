#include "tests/unit/panel/messagepanel.h"

#include <QApplication>
#include <QChildEvent>
#include <QHBoxLayout>
#include <QImage>
#include <QPixmap>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

/** Sees every panel's size at the moment that its list is put into it. */
class FormObserver : public QObject {
public:
    FormObserver() { qApp->installEventFilter(this); }

    QSize form;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        const bool gets_child = event->type() == QEvent::ChildAdded;
        QWidget* const widget = qobject_cast<QWidget*>(watched);
        if (gets_child && widget && static_cast<QChildEvent*>(event)->child()->isWidgetType() &&
            widget->objectName() == QLatin1String("MessageCenter"))
            form = widget->size();
        return false;
    }
};

} // namespace

TEST(MessageCenterForm, BearsTheNamesThatStyleSheetsAndWindowManagersKnow) {
    const MessagePanel panel;
    EXPECT_EQ(QString::fromLatin1("MessageCenter"), panel.objectName());
    EXPECT_EQ(QString::fromLatin1("Form"), panel.windowTitle());
    EXPECT_EQ(QString::fromLatin1("horizontalLayout"), panel.layout()->objectName());
    EXPECT_EQ(QString::fromLatin1("listWidget"), panel.list().objectName());
}

TEST(MessageCenterForm, IsLaidOutAs400By300BeforeItGetsItsSize) {
    const FormObserver observer;
    const MessagePanel panel;
    EXPECT_EQ(QSize(400, 300), observer.form);
    EXPECT_EQ(panel_size, panel.size());
    EXPECT_EQ(panel_size, panel.minimumSize());
    EXPECT_EQ(panel_size, panel.maximumSize());
}

TEST(MessageCenterForm, KeepsAStripForTheFingerAboveTheList) {
    MessagePanel panel;
    panel.instantShow();
    EXPECT_EQ(24, panel.layout()->contentsMargins().top());
    EXPECT_EQ(24, panel.list().y());
}

TEST(MessageCenterForm, LeavesTheOtherMarginsToTheStyle) {
    const MessagePanel panel;
    QWidget plain;
    const QMargins style = (new QHBoxLayout(&plain))->contentsMargins();
    EXPECT_EQ(QMargins(style.left(), 24, style.right(), style.bottom()),
              panel.layout()->contentsMargins());
}

TEST(MessageCenterForm, HasAClockForSlidesAndOneForHiding) {
    const MessagePanel panel;
    EXPECT_FALSE(panel.animTimer().isSingleShot());
    EXPECT_FALSE(panel.animTimer().isActive());
    EXPECT_TRUE(panel.autoHideTimer().isSingleShot());
    EXPECT_FALSE(panel.autoHideTimer().isActive());
}

TEST(MessageCenterForm, WearsTheGivenColorItsInverseForTextAndAGrayOutline) {
    MessagePanel panel;
    EXPECT_TRUE(panel.autoFillBackground());
    EXPECT_EQ(0xffd0d8e0u, panel.palette().color(QPalette::Inactive, QPalette::Window).rgba());
    EXPECT_EQ(0xff2f271fu, panel.palette().color(QPalette::Disabled, QPalette::WindowText).rgba());
    QImage image(panel.size(), QImage::Format_RGB32);
    panel.render(&image);
    const QRgb gray = QColor(Qt::gray).rgb();
    EXPECT_EQ(gray, image.pixel(0, 0));
    EXPECT_EQ(gray, image.pixel(249, 199));
    EXPECT_EQ(0xffd0d8e0u, image.pixel(1, 1));
    EXPECT_EQ(0xffd0d8e0u, image.pixel(248, 198));
}

TEST(MessageCenterForm, KeepsTheAlphaOfItsColorWhenItInvertsIt) {
    MessageCenter panel(QSize(300, 300), panel_size, 0, dock_area, 0x40102030);
    EXPECT_EQ(0x40102030u, panel.palette().color(QPalette::Window).rgba());
    EXPECT_EQ(0x40efdfcfu, panel.palette().color(QPalette::WindowText).rgba());
}
