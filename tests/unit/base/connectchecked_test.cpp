#include "runtime/base/connectchecked.h"

#include <QTimer>

#include <gtest/gtest.h>

TEST(ConnectChecked, Connects) {
    QObject sender;
    QTimer receiver;
    connectChecked(&sender, SIGNAL(destroyed()), &receiver, SLOT(start()), Qt::DirectConnection);
    EXPECT_TRUE(QObject::disconnect(&sender, SIGNAL(destroyed()), &receiver, SLOT(start())));
}

TEST(ConnectCheckedDeathTest, EndsTheProgramWhenThereIsNoSuchSlot) {
    QObject sender;
    QTimer receiver;
    EXPECT_DEATH(connectChecked(&sender, SIGNAL(destroyed()), &receiver, SLOT(begin())),
                 "QObject::connect\\(sender, signal, receiver, member, type\\)");
}
