#include "runtime/panel/messagecenter.h"
#include "runtime/panel/messagecenteritemwidget.h"
#include "runtime/panel/messagecenterlistwidget.h"

#include <QApplication>
#include <QFile>
#include <QMetaMethod>
#include <QScopedPointer>
#include <QStringList>
#include <QVariant>

#include <gtest/gtest.h>

#include "runtime/base/qtcompat.h"

namespace {

const QRect dock(100, 200, 300, 100);

QString signatureOf(const QMetaMethod& method) {
#if PANEL_QT4
    return QString::fromLatin1(method.signature());
#else
    return QString::fromLatin1(method.methodSignature());
#endif
}

QStringList ownMethods(const QMetaObject& meta, QMetaMethod::Access access) {
    QStringList signatures;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        if (meta.method(i).access() == access)
            signatures << signatureOf(meta.method(i));
    }
    return signatures;
}

} // namespace

TEST(MessageCenterInterface, ListsItsPublicSlotsInTheOrderThatOtherCodeCountsOn) {
    EXPECT_EQ(QString::fromLatin1("showMessageAsync(QString,QString,bool) "
                                  "_showMessage(QObject*,QString,QString,bool) "
                                  "removeMessageAsync() toggleShowHide() setRejectMessage(bool)"),
              ownMethods(MessageCenter::staticMetaObject, QMetaMethod::Public)
                  .join(QString::fromLatin1(" ")));
}

TEST(MessageCenterInterface, ListsItsPrivateSlotsAfterThePublicOnes) {
    EXPECT_EQ(QString::fromLatin1("_hideWrapper() animatedHide() instantHide() timerOut() "
                                  "itemWidgetRemoveClicked() scrollClicked() testMessage()"),
              ownMethods(MessageCenter::staticMetaObject, QMetaMethod::Private)
                  .join(QString::fromLatin1(" ")));
    const QMetaObject& meta = MessageCenter::staticMetaObject;
    EXPECT_LT(meta.indexOfSlot("setRejectMessage(bool)"), meta.indexOfSlot("_hideWrapper()"));
}

TEST(MessageCenterInterface, IsMadeOnceAndIgnoresLaterArguments) {
    EXPECT_EQ(nullptr, MessageCenter::getInstance());
    QScopedPointer<MessageCenter> panel(
        MessageCenter::initInstance(QSize(300, 300), QSize(250, 200), 0, dock, int(0xffd0d8e0)));
    ASSERT_NE(nullptr, panel.data());
    EXPECT_EQ(nullptr, panel->parent());
    EXPECT_EQ(panel.data(), MessageCenter::getInstance());
    EXPECT_EQ(panel.data(), MessageCenter::initInstance(QSize(1, 1), QSize(10, 10), 3, QRect(), 0));
    EXPECT_EQ(QSize(250, 200), panel->size());
}

TEST(MessageCenterInterface, IsFoundThroughTheApplicationsProperty) {
    QScopedPointer<MessageCenter> panel(
        MessageCenter::initInstance(QSize(300, 300), QSize(250, 200), 0, dock, int(0xffd0d8e0)));
    EXPECT_EQ(panel.data(), qApp->property("MessageCenter").value<void*>());
}

TEST(MessageCenterInterface, ForgetsAPanelThatTheHostDeleted) {
    delete MessageCenter::initInstance(QSize(300, 300), QSize(250, 200), 0, dock, 0);
    EXPECT_EQ(nullptr, MessageCenter::getInstance());
    EXPECT_FALSE(qApp->property("MessageCenter").isValid());
}

TEST(MessageCenterInterface, StaysThatOfTheProcessWhenAnotherPanelIsDeleted) {
    QScopedPointer<MessageCenter> panel(
        MessageCenter::initInstance(QSize(300, 300), QSize(250, 200), 0, dock, 0));
    delete new MessageCenter(QSize(300, 300), QSize(250, 200), 0, dock, 0);
    EXPECT_EQ(panel.data(), MessageCenter::getInstance());
}

TEST(MessageCenterInterface, LeavesThePropertyToAPanelMadeLater) {
    QScopedPointer<MessageCenter> panel(
        MessageCenter::initInstance(QSize(300, 300), QSize(250, 200), 0, dock, 0));
    MessageCenter later(QSize(300, 300), QSize(250, 200), 0, dock, 0);
    panel.reset();
    EXPECT_EQ(&later, qApp->property("MessageCenter").value<void*>());
}

TEST(MessageCenterInterface, CarriesItsArrowImages) {
    EXPECT_FALSE(QImage(QString::fromLatin1(":/images/up_arrow.png")).isNull());
    EXPECT_FALSE(QImage(QString::fromLatin1(":/images/down_arrow.png")).isNull());
}

TEST(MessageCenterInterface, ShowsANoticeAsItsOnlyEntry) {
    MessageCenter panel(QSize(300, 300), QSize(250, 200), 0, dock, int(0xffd0d8e0));
    panel.showMessageAsync(QString::fromLatin1("title"), QString::fromLatin1("text"), true);
    EXPECT_EQ(1, panel.findChild<MessageCenterListWidget*>()->count());
    EXPECT_TRUE(panel.isVisible());
}
