#include "tests/unit/panel/csvtesting.h"

#include <QTextCodec>

#include <gtest/gtest.h>

namespace {

class CsvSaver : public ::testing::Test {
protected:
    QByteArray saved(const QList<QStringList>& rows) {
        EXPECT_TRUE(saver.saveFile(rows, directory.filePath(QLatin1String("t.txt"))));
        EXPECT_EQ(saver.errorMessageList(), QStringList());
        return directory.read(QLatin1String("t.txt"));
    }

    /** What was saved, without encoding and mark. */
    QString savedText(const QList<QStringList>& rows) {
        saver.setCodec(QTextCodec::codecForName("UTF-8"));
        saver.setGenerateByteOrderMark(false);
        return QString::fromUtf8(saved(rows));
    }

    ScratchSettings settings;
    TemporaryDirectory directory;
    WorkerSaver saver;
};

} // namespace

TEST_F(CsvSaver, WritesMarkedUtf16WithTabsByDefault) {
    EXPECT_EQ(saved(table({texts({"a", "b"})})), QByteArray("\xFF\xFE"
                                                            "a\0\t\0b\0\n\0",
                                                            10));
}

TEST_F(CsvSaver, QuotesAFieldWithATabInATabFile) {
    EXPECT_EQ(savedText(table({texts({"a\tb", "c"})})), text("\"a\tb\"\tc\n"));
}

TEST_F(CsvSaver, DoublesAndEnclosesQuotes) {
    EXPECT_EQ(savedText(table({texts({"a\"b"})})), text("\"a\"\"b\"\n"));
    EXPECT_EQ(savedText(table({texts({"\"\""})})), text("\"\"\"\"\"\"\n"));
}

TEST_F(CsvSaver, QuotesAFieldWithALineFeed) {
    EXPECT_EQ(savedText(table({texts({"a\nb", "c"})})), text("\"a\nb\"\tc\n"));
}

TEST_F(CsvSaver, LeavesACommaInATabFileBare) {
    EXPECT_EQ(savedText(table({texts({"a,b", "c"})})), text("a,b\tc\n"));
}

TEST_F(CsvSaver, LeavesATabInACommaFileBare) {
    saver.setFileFormat(KCSVInterface::CsvFormat);
    EXPECT_EQ(savedText(table({texts({"a,b", "c\td"})})), text("\"a,b\",c\td\n"));
}

TEST_F(CsvSaver, LeavesACarriageReturnBareAlthoughTheLoaderDropsIt) {
    EXPECT_EQ(savedText(table({texts({"a\rb"})})), text("a\rb\n"));
}

TEST_F(CsvSaver, WritesOnlyTheMarkForAnEmptyTable) {
    EXPECT_EQ(saved(QList<QStringList>()), QByteArray("\xFF\xFE"));
}

TEST_F(CsvSaver, WritesNothingForAnEmptyTableWithoutMark) {
    saver.setGenerateByteOrderMark(false);
    EXPECT_EQ(saved(QList<QStringList>()), QByteArray());
}

TEST_F(CsvSaver, WritesTheMarkOfTheCodec) {
    saver.setCodec(QTextCodec::codecForName("UTF-8"));
    EXPECT_EQ(saved(table({texts({"a"})})), QByteArray("\xEF\xBB\xBF"
                                                       "a\n"));
    saver.setCodec(QTextCodec::codecForName("UTF-16BE"));
    EXPECT_EQ(saved(table({texts({"a"})})), QByteArray("\xFE\xFF\0a\0\n", 6));
    saver.setCodec(QTextCodec::codecForName("Big5"));
    EXPECT_EQ(saved(table({texts({"程序"})})), QByteArray("\xB5\x7B\xA7\xC7\n"));
}

TEST_F(CsvSaver, WritesNothingForARowWithoutFields) {
    EXPECT_EQ(savedText(table({texts({"a"}), QStringList(), texts({"b"})})), text("a\nb\n"));
}

TEST_F(CsvSaver, WritesAnEmptyFieldAsAnEmptyLine) {
    EXPECT_EQ(savedText(table({texts({"a"}), texts({""})})), text("a\n\n"));
}

TEST_F(CsvSaver, QuotesEveryFieldWithoutDoublingWhenToldToQuoteAlways) {
    saver.m_quote_when_needed = false;
    EXPECT_EQ(savedText(table({texts({"a", "b\"c", ""})})), text("\"a\"\t\"b\"c\"\t\"\"\n"));
}

TEST_F(CsvSaver, QuotesByTheConfiguredDelimiter) {
    saver.setDelimiter(QLatin1String("||"));
    EXPECT_EQ(savedText(table({texts({"a|b", "c||d"})})), text("a|b||\"c||d\"\n"));
}

TEST_F(CsvSaver, ReplacesTheFileItFinds) {
    directory.write(QLatin1String("t.txt"), QByteArray(1000, 'x'));
    EXPECT_EQ(savedText(table({texts({"a"})})), text("a\n"));
}

TEST_F(CsvSaver, AcceptsNoEmptyNameOffTheMainThread) {
    EXPECT_FALSE(saver.saveFile(QList<QStringList>(), QString()));
    EXPECT_EQ(saver.errorMessageList(), texts({"The file name is empty."}));
}

TEST_F(CsvSaver, ReportsAFileItCannotOpen) {
    EXPECT_FALSE(saver.saveFile(QList<QStringList>(), directory.path()));
    EXPECT_EQ(saver.errorMessageList(), texts({"File cannot be opened."}));
    EXPECT_FALSE(saver.saveFile(QList<QStringList>(), directory.filePath(text("none/t.txt"))));
    EXPECT_EQ(saver.errorMessageList(), texts({"File cannot be opened."}));
}

TEST_F(CsvSaver, RemembersTheDirectoryAlsoOfAFileItCannotOpen) {
    saved(QList<QStringList>());
    EXPECT_EQ(settings.defaultDir(), directory.path());
    saver.saveFile(QList<QStringList>(), directory.filePath(text("none/t.txt")));
    EXPECT_EQ(settings.defaultDir(), directory.filePath(text("none")));
}

TEST_F(CsvSaver, ReportsAFullDiskAsSaved) {
    QList<QStringList> rows;
    for (int i = 0; i < 10000; ++i)
        rows.append(texts({"value"}));
    EXPECT_TRUE(saver.saveFile(rows, text("/dev/full")));
    EXPECT_EQ(saver.errorMessageList(), QStringList());
}
