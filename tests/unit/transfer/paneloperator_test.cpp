#include "host/transfer/paneloperator.h"

#include "runtime/panel/messagecenter.h"

#include <QApplication>
#include <QDialog>
#include <QListWidget>
#include <QThread>

#include <gtest/gtest.h>

#include <memory>

using namespace host;

namespace {

QString text(const char* latin1) {
    return QString::fromLatin1(latin1);
}

/** The driver's dialog, as far as the operator knows it. */
QString answered(const QStringList& files) {
    QDialog dialog;
    dialog.setObjectName(text("ambiguousFilesSelectDialog"));
    QListWidget list(&dialog);
    list.addItems(files);
    list.setCurrentRow(0);
    dialog.exec();
    return list.selectedItems().isEmpty() ? QString() : list.selectedItems().first()->text();
}

} // namespace

TEST(PanelOperatorTest, ReadsTheNoticesOfAnotherThread) {
    PanelOperator panel;
    const std::unique_ptr<QThread> worker(QThread::create([] {
        for (const char* notice : {"first", "second\nline"})
            QMetaObject::invokeMethod(MessageCenter::getInstance(), "showMessageAsync",
                                      Qt::QueuedConnection, Q_ARG(QString, text("DMC50")),
                                      Q_ARG(QString, text(notice)), Q_ARG(bool, true));
    }));
    worker->start();
    worker->wait();
    QApplication::processEvents();
    EXPECT_EQ(panel.takeNotices(), QStringList({text("first"), text("second\nline")}));
    EXPECT_EQ(panel.takeNotices(), QStringList());
    MessageCenter::getInstance()->showMessageAsync(text("DMC50"), text("at once"), true);
    EXPECT_EQ(panel.takeNotices(), QStringList(text("at once")));
}

TEST(PanelOperatorTest, AnswersTheDriversQuestion) {
    PanelOperator panel;
    const QStringList files = {text("/media/usb/PROG_7.txt"), text("/media/usb/PROG_7_b.txt")};
    panel.chooseFile(text("PROG_7_b.txt"));
    EXPECT_EQ(answered(files), files[1]);
    panel.chooseFile(text("PROG_7.txt"));
    EXPECT_EQ(answered(files), files[0]);
    panel.chooseFile(text("PROG_8.txt"));
    EXPECT_EQ(answered(files), QString()) << "rather none than a wrong one";
}

TEST(PanelOperatorTest, KeepsTheProgramRunningWhenADialogCloses) {
    PanelOperator panel;
    EXPECT_FALSE(QGuiApplication::quitOnLastWindowClosed());
}
