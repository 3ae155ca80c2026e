// What the loader and the saver show in the main thread, and what the operator
// answers.
#include "tests/support/machinememory.h"
#include "tests/unit/panel/csvtesting.h"
#include "tests/unit/panel/modaloperator.h"

#include <QCoreApplication>
#include <QTextCodec>
#include <QWidget>

#include <gtest/gtest.h>

namespace {

class CsvDialogs : public ::testing::Test {
protected:
    CsvDialogs() : loader(&parent), saver(&parent) {}

    /** Makes the file t.txt of @p content. */
    QString file(const char* content) {
        directory.write(text("t.txt"), utf16(text(content)));
        return directory.filePath(text("t.txt"));
    }

    ScratchSettings settings;
    TemporaryDirectory directory;
    QWidget parent;
    OpenLoader loader;
    KCSVSaver saver;
    ModalOperator panel_operator;
};

} // namespace

TEST_F(CsvDialogs, LoadsTheFileThatTheOperatorPicks) {
    const QString name = file("a\tb\n1\t2\n");
    settings.setDefaultDir(directory.path());
    panel_operator.willPick(name);
    EXPECT_TRUE(loader.openFile());
    EXPECT_EQ(loader.fileContent(), table({texts({"a", "b"}), texts({"1", "2"})}));
    ASSERT_EQ(panel_operator.seen.size(), 1);
    EXPECT_EQ(panel_operator.seen[0].title, text("Import File"));
    EXPECT_EQ(panel_operator.seen[0].directory, directory.path());
    EXPECT_EQ(panel_operator.seen[0].filters, texts({"Text File (*.txt)"}));
    EXPECT_EQ(panel_operator.seen[0].parent, &parent);
}

TEST_F(CsvDialogs, StartsInTheApplicationsDirectoryAtFirst) {
    loader.setFileFormat(KCSVInterface::CsvFormat);
    panel_operator.willPick(QString());
    EXPECT_FALSE(loader.openFile());
    EXPECT_EQ(panel_operator.seen.value(0).directory, QCoreApplication::applicationDirPath());
    EXPECT_EQ(panel_operator.seen.value(0).filters, texts({"CSV File (*.csv)"}));
}

TEST_F(CsvDialogs, TakesACancelledDialogAsAFileNotOpened) {
    panel_operator.willPick(QString());
    EXPECT_FALSE(loader.openFile());
    EXPECT_EQ(loader.m_status, 1);
    EXPECT_EQ(loader.errorMessageList(), QStringList());

    panel_operator.willPress(QMessageBox::Ok);
    EXPECT_EQ(loader.fileContent(), QList<QStringList>());
    ASSERT_EQ(panel_operator.seen.size(), 2);
    EXPECT_EQ(panel_operator.seen[1].title, text("File cannot be opened."));
    EXPECT_EQ(panel_operator.seen[1].text, text("Please select the right file."));
    EXPECT_EQ(panel_operator.seen[1].parent, &parent);
    EXPECT_EQ(loader.errorMessageList(), QStringList());
}

TEST_F(CsvDialogs, AsksForAFileBeforeOneWasPicked) {
    panel_operator.willPress(QMessageBox::Ok);
    EXPECT_EQ(loader.fileContent(), QList<QStringList>());
    EXPECT_EQ(panel_operator.seen.value(0).title, text("File cannot be loaded."));
    EXPECT_EQ(panel_operator.seen.value(0).text, text("Please select a file."));
    EXPECT_EQ(panel_operator.seen.value(0).buttons, QMessageBox::Ok);
}

TEST_F(CsvDialogs, ShowsTheErrorsOfALoad) {
    panel_operator.willPress(QMessageBox::Ok);
    EXPECT_FALSE(loader.openFile(file("a\tb\n1\n\"")));
    EXPECT_EQ(panel_operator.seen.value(0).title, text("File Format Error."));
    EXPECT_EQ(panel_operator.seen.value(0).text, text("1. Format error at line 4"));
    EXPECT_EQ(loader.m_status, 2);

    panel_operator.willPress(QMessageBox::Ok);
    EXPECT_EQ(loader.fileContent(), QList<QStringList>());
    EXPECT_EQ(panel_operator.seen.value(1).title, text("File cannot be loaded."));
    EXPECT_EQ(panel_operator.seen.value(1).text, text("Please check file format."));
    EXPECT_EQ(loader.errorMessageList(), texts({"Format error at line 4"}));
}

TEST_F(CsvDialogs, ListsTwentyTwoOfThirtyErrors) {
    loader.m_tolerate_column_mismatch = false;
    panel_operator.willPress(QMessageBox::Ok);
    EXPECT_FALSE(loader.openFile(QString::fromLatin1(TEST_DATA_DIR "/csv/thirty_errors.txt")));
    const QStringList lines = panel_operator.seen.value(0).text.split(QLatin1Char('\n'));
    ASSERT_EQ(lines.size(), 22);
    EXPECT_EQ(lines.first(), text("1. Line 2 format error."));
    EXPECT_EQ(lines.at(20), text("21. Line 22 format error."));
    EXPECT_EQ(lines.last(), text("22. Line 23 format error....."));
    EXPECT_EQ(loader.errorMessageList().size(), 30);
}

TEST_F(CsvDialogs, ListsTwentyOneErrorsWithoutDots) {
    loader.m_tolerate_column_mismatch = false;
    const QByteArray rows = QByteArray("1\n").repeated(21);
    panel_operator.willPress(QMessageBox::Ok);
    EXPECT_FALSE(loader.openFile(file(("a\tb\n" + rows).constData())));
    EXPECT_TRUE(panel_operator.seen.value(0).text.endsWith(text("\n21. Line 22 format error.")));
}

TEST_F(CsvDialogs, PutsDotsBehindTheTwentySecondErrorWhetherOrNotMoreFollow) {
    loader.m_tolerate_column_mismatch = false;
    for (int count : {22, 23}) {
        const QByteArray rows = QByteArray("1\n").repeated(count);
        panel_operator.seen.clear();
        panel_operator.willPress(QMessageBox::Ok);
        EXPECT_FALSE(loader.openFile(file(("a\tb\n" + rows).constData())));
        EXPECT_TRUE(
            panel_operator.seen.value(0).text.endsWith(text("\n22. Line 23 format error.....")))
            << count;
    }
}

TEST_F(CsvDialogs, ShowsThatItsShortRowsTakeTooMuchMemory) {
    const MachineMemory machine(32 * 1024 * 1024);
    const QByteArray table = QByteArray(4095, '\t') + '\n' + QByteArray("1\n").repeated(8000);
    panel_operator.willPress(QMessageBox::Ok);
    EXPECT_FALSE(loader.openFile(file(table.constData())));
    EXPECT_EQ(loader.m_status, 1);
    EXPECT_EQ(panel_operator.seen.value(0).title, text("File Format Error."));
    EXPECT_EQ(panel_operator.seen.value(0).text,
              text("1. Not enough memory to fill up the rows short of header."));
}

TEST_F(CsvDialogs, WarnsOfAModifiedFormat) {
    EXPECT_TRUE(loader.openFile(file("first,second,third\n1,2\n")));
    panel_operator.willPress(QMessageBox::Ok);
    EXPECT_EQ(loader.fileContent().size(), 2);
    ASSERT_EQ(panel_operator.seen.size(), 1);
    EXPECT_EQ(panel_operator.seen[0].title, text("Warning: Incorrect File Format"));
    EXPECT_EQ(panel_operator.seen[0].text,
              text("The file format has been modified. We strongly recommend you to export the "
                   "file again after final edits.\n"
                   "Line 2 is 1 columns short of header."));
    EXPECT_EQ(loader.errorMessageList(), QStringList());
}

TEST_F(CsvDialogs, ShowsNothingForACleanFile) {
    EXPECT_TRUE(loader.openFile(file("a\n1\n")));
    EXPECT_EQ(loader.fileContent().size(), 2);
    EXPECT_TRUE(panel_operator.seen.isEmpty());
}

TEST_F(CsvDialogs, AsksForTheFormatEachTime) {
    const QString name = file("a\n1\n");
    loader.setAskFormatEachTime(true);
    panel_operator.willPress(QMessageBox::Ok);
    EXPECT_TRUE(loader.openFile(name));
    loader.setFileFormat(KCSVInterface::CsvFormat);
    panel_operator.willPress(QMessageBox::Cancel);
    EXPECT_FALSE(loader.openFile(name));
    EXPECT_EQ(loader.errorMessageList(), texts({"User canceled operation."}));

    ASSERT_EQ(panel_operator.seen.size(), 2);
    const ModalOperator::Seen& first = panel_operator.seen[0];
    EXPECT_EQ(first.title, text("Import/Export File"));
    EXPECT_EQ(first.text, text("The import/export file will process as TXT format."));
    EXPECT_EQ(first.informative_text, text("Do you want to procced?"));
    EXPECT_EQ(first.buttons, QMessageBox::Ok | QMessageBox::Cancel);
    EXPECT_TRUE(first.cancel_is_default);
    EXPECT_EQ(first.parent, nullptr);
    EXPECT_EQ(panel_operator.seen[1].text,
              text("The import/export file will process as CSV format."));
}

TEST_F(CsvDialogs, SavesToTheFileThatTheOperatorPicks) {
    settings.setDefaultDir(directory.path());
    panel_operator.willPick(directory.filePath(text("new.txt")));
    EXPECT_TRUE(saver.saveFile(table({texts({"a"})}), QString()));
    EXPECT_EQ(directory.read(text("new.txt")), utf16(text("a\n")));
    ASSERT_EQ(panel_operator.seen.size(), 1);
    EXPECT_EQ(panel_operator.seen[0].title, text("Export File"));
    EXPECT_EQ(panel_operator.seen[0].directory, directory.path());
    EXPECT_EQ(panel_operator.seen[0].filters, texts({"Text File (*.txt)"}));
    EXPECT_EQ(panel_operator.seen[0].parent, &parent);
}

TEST_F(CsvDialogs, SavesNothingWhenTheDialogIsCancelled) {
    panel_operator.willPick(QString());
    EXPECT_FALSE(saver.saveFile(table({texts({"a"})}), QString()));
    EXPECT_EQ(saver.errorMessageList(), QStringList());
}

TEST_F(CsvDialogs, WarnsOfAFileThatCannotBeSaved) {
    panel_operator.willPress(QMessageBox::Ok);
    EXPECT_FALSE(saver.saveFile(table({texts({"a"})}), directory.path()));
    ASSERT_EQ(panel_operator.seen.size(), 1);
    EXPECT_EQ(panel_operator.seen[0].title, text("File cannot be opened."));
    EXPECT_EQ(panel_operator.seen[0].text, text("File cannot be opened."));
    EXPECT_EQ(panel_operator.seen[0].buttons, QMessageBox::Ok);
    EXPECT_EQ(panel_operator.seen[0].parent, &parent);
    EXPECT_EQ(saver.errorMessageList(), QStringList());
}

TEST_F(CsvDialogs, SavesNothingWhenTheFormatIsDeclined) {
    saver.setAskFormatEachTime(true);
    panel_operator.willPress(QMessageBox::Cancel);
    EXPECT_FALSE(saver.saveFile(table({texts({"a"})}), directory.filePath(text("new.txt"))));
    EXPECT_FALSE(directory.contains(text("new.txt")));
    EXPECT_EQ(saver.errorMessageList(), texts({"User canceled operation."}));
}
