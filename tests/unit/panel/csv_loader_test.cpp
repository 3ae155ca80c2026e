// The rules of rows and fields, and what a load reports off the main thread.
#include "tests/unit/panel/csvtesting.h"

#include <QDir>

#include <gtest/gtest.h>

namespace {

class CsvLoader : public ::testing::Test {
protected:
    /** openFile() on a default file of @p content. */
    bool open(const char* content) {
        directory.write(QLatin1String("t.txt"), utf16(text(content)));
        return loader.openFile(directory.filePath(QLatin1String("t.txt")));
    }

    /** The rows of @p content after its header "a,b", in a comma file. */
    QList<QStringList> rowsOf(const char* content) {
        loader.setFileFormat(KCSVInterface::CsvFormat);
        EXPECT_TRUE(loader.loadText(text("a,b\n") + text(content)));
        return loader.m_content.mid(1);
    }

    ScratchSettings settings;
    TemporaryDirectory directory;
    WorkerLoader loader;
};

} // namespace

TEST_F(CsvLoader, LoadsTheHeaderAndEveryRow) {
    EXPECT_TRUE(open("a\tb\n1\t2\n3\t4\n"));
    EXPECT_EQ(loader.fileContent(),
              table({texts({"a", "b"}), texts({"1", "2"}), texts({"3", "4"})}));
    EXPECT_EQ(loader.m_status, 3);
    EXPECT_EQ(loader.errorMessageList(), QStringList());
    EXPECT_EQ(loader.warningMessageList(), QStringList());
}

TEST_F(CsvLoader, RefusesAFileWithOnlyAHeader) {
    EXPECT_FALSE(open("a\tb\n"));
    EXPECT_EQ(loader.errorMessageList(), texts({"No content found in the imported file."}));
}

TEST_F(CsvLoader, KeepsItsContentWhenAFileHasNone) {
    EXPECT_TRUE(open("a\n1\n"));
    EXPECT_FALSE(open("b\n"));
    EXPECT_EQ(loader.m_content, table({texts({"a"}), texts({"1"})}));
}

TEST_F(CsvLoader, ReplacesItsContentByTheNextFile) {
    EXPECT_TRUE(open("a\n1\n"));
    EXPECT_TRUE(open("b\n2\n"));
    EXPECT_EQ(loader.m_content, table({texts({"b"}), texts({"2"})}));
}

TEST_F(CsvLoader, DetectsTabsInAFileOpenedWithCommas) {
    loader.setFileFormat(KCSVInterface::CsvFormat);
    EXPECT_TRUE(loader.loadText(text("one\ttwo\tthree\n1\t2\t3\n")));
    EXPECT_EQ(loader.m_status, 4);
    EXPECT_TRUE(loader.m_delimiter_detected);
    EXPECT_EQ(loader.m_content, table({texts({"one", "two", "three"}), texts({"1", "2", "3"})}));
    EXPECT_EQ(loader.delimiter(), text(","));

    EXPECT_TRUE(open("one\ttwo\tthree\n1\t2\t3\n"));
    EXPECT_EQ(loader.m_status, 3);
}

TEST_F(CsvLoader, RemembersADetectionThroughLaterLoads) {
    EXPECT_TRUE(open("first,second,third\n1,2,3\n"));
    EXPECT_TRUE(loader.m_delimiter_detected);
    EXPECT_TRUE(open("a\tb\n1\t2\n"));
    EXPECT_TRUE(loader.m_delimiter_detected);
    EXPECT_EQ(loader.m_content, table({texts({"a", "b"}), texts({"1", "2"})}));
}

TEST_F(CsvLoader, TakesAShortHeaderWithoutItsDelimiterAsOneField) {
    EXPECT_TRUE(open("a,b\n1,2\n"));
    EXPECT_EQ(loader.fileContent(), table({texts({"a,b"}), texts({"1,2"})}));
}

TEST_F(CsvLoader, SuspectsAHeaderWithAverageFieldsOfMoreThanFiveCharacters) {
    EXPECT_TRUE(loader.loadText(text("123456789\n1\n"))); // 9 / 5 is 1
    EXPECT_FALSE(loader.loadText(text("1234567890\n1\n")));
    EXPECT_EQ(loader.errors, texts({"File format error.\nCannot detect delimiter."}));
}

TEST_F(CsvLoader, EmptiesItsContentWhenTheHeaderIsRefused) {
    EXPECT_TRUE(open("a\n1\n"));
    EXPECT_FALSE(open("nothing to split by\n1\n"));
    EXPECT_EQ(loader.m_content, QList<QStringList>());
}

TEST_F(CsvLoader, UnquotesFieldsOfACommaFile) {
    EXPECT_EQ(rowsOf("\"x,y\",\"say \"\"hi\"\"\"\n"), table({texts({"x,y", "say \"hi\""})}));
}

TEST_F(CsvLoader, ReadsQuotesByTheirNumber) {
    EXPECT_EQ(rowsOf("\"\",\"\"\"\"\n"), table({texts({"", "\""})}));
    EXPECT_EQ(rowsOf("\"\"\",\",1\n"), table({texts({"\",", "1"})}));
    EXPECT_EQ(rowsOf("\"a\"b\"c\",1\n"), table({texts({"a\"b\"c", "1"})}));
    EXPECT_EQ(rowsOf("\"a\"b\",\",1\n"), table({texts({"a\"b\",", "1"})}));
    EXPECT_EQ(rowsOf("\"\"\"\"\"\",\"a\"\"\"\"b\"\n"), table({texts({"\"\"", "a\"\"b"})}));
}

TEST_F(CsvLoader, TakesAFieldThatDoesNotBeginWithAQuoteAsItStands) {
    EXPECT_EQ(rowsOf("5\" pipe, \"x\"\n"), table({texts({"5\" pipe", " \"x\""})}));
}

TEST_F(CsvLoader, JoinsAQuotedFieldOverLinesAndCountsPhysicalLines) {
    EXPECT_TRUE(open("a\tb\n\"1\n2\"\t3\n4\n"));
    EXPECT_EQ(loader.fileContent(),
              table({texts({"a", "b"}), texts({"1\n2", "3"}), texts({"4", ""})}));
    EXPECT_EQ(loader.m_status, 5);
    EXPECT_EQ(loader.warningMessageList(), texts({"Line 4 is 1 columns short of header."}));
}

TEST_F(CsvLoader, KeepsEmptyLinesAndDelimitersInsideQuotes) {
    EXPECT_EQ(rowsOf("\"\n\n,\",\"1\n\"\n"), table({texts({"\n\n,", "1\n"})}));
}

TEST_F(CsvLoader, EndsTheLoadAtAQuoteThatIsNeverClosed) {
    EXPECT_FALSE(loader.loadText(text("a\tb\n1\t2\n3\t\"4\n5\t6")));
    EXPECT_EQ(loader.errors, texts({"Format error at line 5"}));
    EXPECT_EQ(loader.m_content, table({texts({"a", "b"}), texts({"1", "2"})}));
}

TEST_F(CsvLoader, TakesALoneQuoteInTheLastLineAsNeverClosed) {
    EXPECT_FALSE(loader.loadText(text("a\tb\n\"")));
    EXPECT_EQ(loader.errors, texts({"Format error at line 3"}));
}

TEST_F(CsvLoader, SkipsEmptyLinesButCountsThem) {
    ProgressRecorder progress(loader);
    EXPECT_TRUE(loader.loadText(text("a\tb\n\n\n1\n")));
    EXPECT_EQ(loader.m_content, table({texts({"a", "b"}), texts({"1", ""})}));
    EXPECT_EQ(loader.warnings, texts({"Line 4 is 1 columns short of header."}));
    EXPECT_EQ(progress.notes, texts({"total lines=4", "current line=0", "current line=3"}));
}

TEST_F(CsvLoader, TellsTheLastLineOfARowAsItsProgress) {
    ProgressRecorder progress(loader);
    EXPECT_TRUE(loader.loadText(text("a\n\"1\n2\"\n")));
    EXPECT_EQ(progress.notes, texts({"total lines=3", "current line=0", "current line=2"}));
}

TEST_F(CsvLoader, TellsNoProgressOfAFileWithoutContent) {
    ProgressRecorder progress(loader);
    EXPECT_FALSE(loader.loadText(text("a")));
    EXPECT_EQ(progress.notes, QStringList());
}

TEST_F(CsvLoader, PadsAShortRowWithAWarning) {
    EXPECT_TRUE(open("a\tb\n1\t2\n3\n"));
    EXPECT_EQ(loader.warningMessageList(), texts({"Line 3 is 1 columns short of header."}));
    EXPECT_EQ(loader.m_status, 5);
    EXPECT_EQ(loader.m_content.last(), texts({"3", ""}));
}

TEST_F(CsvLoader, KeepsALongRowWithAWarning) {
    EXPECT_TRUE(open("a\tb\n1\t2\t3\t4\n"));
    EXPECT_EQ(loader.warningMessageList(), texts({"Line 2 is 2 columns more of header."}));
    EXPECT_EQ(loader.m_status, 5);
    EXPECT_EQ(loader.m_content.last(), texts({"1", "2", "3", "4"}));
}

TEST_F(CsvLoader, KeepsTheRowsItReportsWhenItToleratesNone) {
    loader.m_tolerate_column_mismatch = false;
    loader.m_delimiter_detected = true;
    EXPECT_FALSE(open("a\tb\n1\n1\t2\n1\t2\t3\n"));
    EXPECT_EQ(loader.errorMessageList(), texts({"Line 2 format error.", "Line 4 format error."}));
    EXPECT_EQ(loader.warningMessageList(), QStringList());
    EXPECT_FALSE(loader.m_delimiter_detected);
    EXPECT_EQ(loader.m_content,
              table({texts({"a", "b"}), texts({"1"}), texts({"1", "2"}), texts({"1", "2", "3"})}));
}

TEST_F(CsvLoader, CountsTheHeadersColumnsWithoutRegardToQuotes) {
    loader.setFileFormat(KCSVInterface::CsvFormat);
    EXPECT_TRUE(loader.loadText(text("\"a,b\",c\n1,2\n")));
    EXPECT_EQ(loader.m_content, table({texts({"a,b", "c"}), texts({"1", "2", ""})}));
    EXPECT_EQ(loader.warnings, texts({"Line 2 is 1 columns short of header."}));
}

TEST_F(CsvLoader, ComparesAHeaderOfSeveralLinesWithItsOwnFirstLine) {
    EXPECT_TRUE(loader.loadText(text("a\t\"b\nc\"\td\n1\t2\n")));
    EXPECT_EQ(loader.m_content, table({texts({"a", "b\nc", "d"}), texts({"1", "2"})}));
    EXPECT_EQ(loader.warnings, texts({"Line 2 is 1 columns more of header."}));
}

TEST_F(CsvLoader, SplitsAtADelimiterOfSeveralCharacters) {
    loader.setDelimiter(text("||"));
    EXPECT_TRUE(loader.loadText(text("a||b\n1|||2\n\"3||4\"||5\n")));
    EXPECT_EQ(loader.m_content,
              table({texts({"a", "b"}), texts({"1", "|2"}), texts({"3||4", "5"})}));
}

TEST_F(CsvLoader, CountsTheQuotesOfADelimiterThatHoldsOne) {
    loader.setDelimiter(text("\";"));
    EXPECT_TRUE(loader.loadText(text("a\n\"1\";\"\"\n")));
    EXPECT_EQ(loader.m_content, table({texts({"a"}), texts({"1\";\""})}));
}

TEST_F(CsvLoader, SplitsEveryCharacterApartAtAnEmptyDelimiter) {
    loader.setDelimiter(QString());
    EXPECT_TRUE(loader.loadText(text("ab\n12\n")));
    EXPECT_EQ(loader.m_content, table({texts({"", "a", "b", ""}), texts({"", "1", "2", ""})}));
}

TEST_F(CsvLoader, ReportsAnEmptyNameOffTheMainThread) {
    EXPECT_FALSE(loader.openFile());
    EXPECT_EQ(loader.m_status, 0);
    EXPECT_EQ(loader.errorMessageList(), texts({"The file name is empty."}));
    EXPECT_EQ(loader.fileContent(), QList<QStringList>());
    EXPECT_EQ(loader.errorMessageList(), texts({"The file name is empty.", "File cannot be loaded.",
                                                "Please select a file."}));
}

TEST_F(CsvLoader, AddsTheOutcomeToTheErrorsOnEveryQuestion) {
    loader.fileContent();
    loader.fileContent();
    EXPECT_EQ(loader.errorMessageList(),
              texts({"File cannot be loaded.", "Please select a file.", "File cannot be loaded.",
                     "Please select a file."}));
}

TEST_F(CsvLoader, ReportsAFileThatCannotBeOpened) {
    EXPECT_FALSE(loader.openFile(directory.filePath(text("none.txt"))));
    EXPECT_EQ(loader.m_status, 1);
    EXPECT_EQ(loader.errorMessageList(), QStringList());
    EXPECT_EQ(loader.fileContent(), QList<QStringList>());
    EXPECT_EQ(loader.errorMessageList(),
              texts({"File cannot be opened.", "Please select the right file."}));
}

TEST_F(CsvLoader, EndsAFailedLoadWithoutWarningsAsLoaded) {
    EXPECT_FALSE(open("a\tb\n1\t2\n\""));
    EXPECT_EQ(loader.m_status, 3);
    EXPECT_EQ(loader.fileContent(), table({texts({"a", "b"}), texts({"1", "2"})}));
    EXPECT_EQ(loader.errorMessageList(), texts({"Format error at line 4"}));
}

TEST_F(CsvLoader, ReportsAFailedLoadWithWarnings) {
    EXPECT_FALSE(open("a\tb\n1\n\""));
    EXPECT_EQ(loader.m_status, 2);
    EXPECT_EQ(loader.fileContent(), QList<QStringList>());
    EXPECT_EQ(loader.errorMessageList(), texts({"Format error at line 4", "File cannot be loaded.",
                                                "Please check file format."}));
}

TEST_F(CsvLoader, ReportsTheOnlyWarning) {
    EXPECT_TRUE(open("a\tb\n1\n"));
    EXPECT_EQ(loader.fileContent().size(), 2);
    EXPECT_EQ(loader.errorMessageList(),
              texts({"Warning: Incorrect File Format", "Line 2 is 1 columns short of header."}));
}

TEST_F(CsvLoader, ReportsTwoWarnings) {
    EXPECT_TRUE(open("a\tb\n1\n1\t2\t3\n"));
    loader.fileContent();
    EXPECT_EQ(loader.errorMessageList(),
              texts({"Warning: Incorrect File Format", "Line 2 is 1 columns short of header.\n"
                                                       "Line 3 is 1 columns more of header."}));
}

TEST_F(CsvLoader, ReportsTheFirstTwoOfMoreWarnings) {
    EXPECT_TRUE(open("a\tb\n1\n2\n3\n4\n"));
    loader.fileContent();
    EXPECT_EQ(loader.errorMessageList(),
              texts({"Warning: Incorrect File Format", "Line 2 is 1 columns short of header.\n"
                                                       "Line 3 is 1 columns short of header.\n"
                                                       "..."}));
}

TEST_F(CsvLoader, RecommendsANewExportAfterDetectingTheDelimiter) {
    EXPECT_TRUE(open("first,second,third\n1,2\n"));
    EXPECT_EQ(loader.fileContent().size(), 2);
    EXPECT_EQ(loader.errorMessageList(),
              texts({"Warning: Incorrect File Format",
                     "The file format has been modified. We strongly recommend you to export the "
                     "file again after final edits.\n"
                     "Line 2 is 1 columns short of header."}));
}

TEST_F(CsvLoader, ReportsADetectionWithoutWarnings) {
    EXPECT_TRUE(loader.loadText(text("first,second,third\n1,2,3\n")));
    EXPECT_EQ(loader.fileContent().size(), 2);
    EXPECT_EQ(loader.errorMessageList(),
              texts({"Warning: Incorrect File Format",
                     "The file format has been modified. We strongly recommend you to export the "
                     "file again after final edits.\n"}));
}

TEST_F(CsvLoader, ReturnsNothingForAnUnknownStatus) {
    EXPECT_TRUE(open("a\n1\n"));
    loader.m_status = 6;
    EXPECT_EQ(loader.fileContent(), QList<QStringList>());
    EXPECT_EQ(loader.errorMessageList(), QStringList());
}

TEST_F(CsvLoader, ClearsItsMessagesWithEachFile) {
    EXPECT_FALSE(open("a\tb\n1\n\""));
    EXPECT_TRUE(open("a\tb\n1\t2\n"));
    EXPECT_EQ(loader.errorMessageList(), QStringList());
    EXPECT_EQ(loader.warningMessageList(), QStringList());
    EXPECT_EQ(loader.m_status, 3);
}

TEST_F(CsvLoader, KeepsItsMessagesWhenTheFormatIsDeclined) {
    EXPECT_FALSE(open("a\tb\n1\n\""));
    loader.setAskFormatEachTime(true);
    EXPECT_FALSE(open("a\tb\n1\t2\n"));
    EXPECT_EQ(loader.errorMessageList().first(), text("Format error at line 4"));
    EXPECT_EQ(loader.errorMessageList().last(), text("User canceled operation."));
    EXPECT_EQ(loader.warningMessageList().size(), 1);
    EXPECT_EQ(loader.m_status, 2);
}

TEST_F(CsvLoader, RemembersTheDirectoryOfAFileThatOpened) {
    EXPECT_TRUE(open("a\n1\n"));
    EXPECT_EQ(settings.defaultDir(), directory.path());
    EXPECT_FALSE(loader.openFile(text("/nowhere/none.txt")));
    EXPECT_EQ(settings.defaultDir(), directory.path());
}

TEST_F(CsvLoader, RemembersTheDirectoryOfARelativeNameAsAbsolute) {
    directory.write(text("t.txt"), utf16(text("a\n1\n")));
    EXPECT_TRUE(loader.openFile(QDir().relativeFilePath(directory.filePath(text("t.txt")))));
    EXPECT_EQ(settings.defaultDir(), directory.path());
}

TEST_F(CsvLoader, SharesAFieldThatEqualsTheOneAbove) {
    EXPECT_TRUE(loader.loadText(text("name\tx\nname\t\"x\"\n")));
    EXPECT_EQ(loader.m_content.at(0).at(0).constData(), loader.m_content.at(1).at(0).constData());
    EXPECT_EQ(loader.m_content.at(0).at(1).constData(), loader.m_content.at(1).at(1).constData());
}
