// The choice dialog in real windows: the test's main thread is the GUI thread,
// as on the panel, and a worker thread asks.
#include "runtime/drivers/dmc50v3/transfer/ambiguousfilesselectdialog.h"
#include "runtime/drivers/dmc50v3/transfer/dialogwrapper.h"
#include "tests/support/dialogdriver.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>

#include <gtest/gtest.h>

#include <memory>
#include <thread>

namespace {

const QStringList& twoFiles() {
    static const QStringList files = QStringList() << QLatin1String("/usb/PROG_7.txt")
                                                   << QLatin1String("/usb/PROG_7_old.txt");
    return files;
}

/** Asks from a worker thread, @p times on one wrapper; @p driver plays the operator. */
QString choiceOf(const QStringList& files, DialogDriver& driver, int times = 1) {
    dialogWrapper wrapper;
    std::thread worker([&] {
        for (int i = 0; i < times; ++i)
            wrapper.showDialog(files);
        driver.finish();
    });
    driver.exec();
    worker.join();
    return wrapper.getSelectedFileName();
}

} // namespace

TEST(ChoiceDialog, LooksAsThePanelsDesignersLaidItOut) {
    ambiguousFilesSelectDialog dialog;
    EXPECT_EQ(dialog.objectName(), QLatin1String("ambiguousFilesSelectDialog"));
    EXPECT_EQ(dialog.size(), QSize(400, 300));
    EXPECT_EQ(dialog.windowTitle(), QLatin1String("Dialog"));
    // Dialog is what the toolkit adds for a window without a parent.
    EXPECT_EQ(dialog.windowFlags() & ~Qt::WindowType_Mask,
              Qt::WindowStaysOnTopHint | Qt::CustomizeWindowHint);
    QVBoxLayout* layout = dialog.findChild<QVBoxLayout*>(QLatin1String("verticalLayout"));
    ASSERT_TRUE(layout);
    QLabel* label = qobject_cast<QLabel*>(layout->itemAt(0)->widget());
    QListWidget* list = qobject_cast<QListWidget*>(layout->itemAt(1)->widget());
    QDialogButtonBox* box = qobject_cast<QDialogButtonBox*>(layout->itemAt(2)->widget());
    ASSERT_TRUE(label && list && box);
    EXPECT_EQ(label->objectName(), QLatin1String("label"));
    EXPECT_EQ(list->objectName(), QLatin1String("listWidget"));
    EXPECT_EQ(box->objectName(), QLatin1String("buttonBox"));
    EXPECT_EQ(label->text(), QLatin1String("Please select a file to write data to DMC50:"));
    EXPECT_EQ(label->font().family(), QLatin1String("DejaVu Sans"));
    EXPECT_EQ(label->font().pointSize(), 12);
    EXPECT_EQ(list->font().pointSize(), 13);
    EXPECT_EQ(box->standardButtons(), QDialogButtonBox::Ok);
    EXPECT_EQ(box->orientation(), Qt::Horizontal);
}

TEST(ChoiceDialog, SelectsNothingWithoutFiles) {
    ambiguousFilesSelectDialog dialog;
    dialog.addItems(QStringList());
    EXPECT_EQ(dialog.getFileName(), QString());
}

TEST(ChoiceDialog, AddingToAListKeepsTheFirstRowCurrent) {
    ambiguousFilesSelectDialog dialog;
    dialog.addItems(twoFiles());
    dialog.addItems(QStringList(QLatin1String("/usb/PROG_7_z.txt")));
    EXPECT_EQ(dialog.getFileName(), QLatin1String("/usb/PROG_7.txt"));
}

TEST(ChoiceDialog, AddingToAListMakesTheFirstRowCurrentAgain) {
    ambiguousFilesSelectDialog dialog;
    dialog.addItems(twoFiles());
    dialog.findChild<QListWidget*>()->setCurrentRow(1);
    ASSERT_EQ(dialog.getFileName(), QLatin1String("/usb/PROG_7_old.txt"));
    dialog.addItems(twoFiles());
    EXPECT_EQ(dialog.getFileName(), QLatin1String("/usb/PROG_7.txt"));
}

TEST(ChoiceDialog, PreselectsTheFirstFile) {
    DialogDriver driver(DialogDriver::PressOk);
    EXPECT_EQ(choiceOf(twoFiles(), driver), QLatin1String("/usb/PROG_7.txt"));
    EXPECT_EQ(driver.offered(), twoFiles());
}

TEST(ChoiceDialog, GivesTheFileThatTheOperatorClicks) {
    DialogDriver driver(DialogDriver::PressOk, 1);
    EXPECT_EQ(choiceOf(twoFiles(), driver), QLatin1String("/usb/PROG_7_old.txt"));
}

TEST(ChoiceDialog, ClosingItWithoutTheButtonStillGivesTheSelectedFile) {
    DialogDriver driver(DialogDriver::CloseWindow, 1);
    EXPECT_EQ(choiceOf(twoFiles(), driver), QLatin1String("/usb/PROG_7_old.txt"));
}

TEST(ChoiceDialog, ASecondQuestionOnOneWrapperIsAskedTwice) {
    DialogDriver driver(DialogDriver::PressOk);
    choiceOf(twoFiles(), driver, 2);
    EXPECT_EQ(driver.dialogsSeen(), 1 + 2);
}
