// The check of a header that splits into few fields for its length.
#include "tests/unit/panel/csvtesting.h"

#include <gtest/gtest.h>

#include <ostream>

namespace {

struct HeaderCase {
    const char* line;
    bool error; // in a comma file, where tabs are the only alternative
    const char* why;
};

void PrintTo(const HeaderCase& header, std::ostream* stream) {
    *stream << header.line << " (" << header.why << ")";
}

class CsvHeader : public ::testing::TestWithParam<HeaderCase> {};

const HeaderCase header_cases[] = {
    {"long title,b", false, "its delimiter and no quote at all"},
    {"long title", true, "no delimiter"},
    {"\"long title\"", true, "no delimiter, quoted"},
    {"\"long, title\",b", true, "delimiter in a quoted part at the start of the line"},
    {"x\"long, title\",b", false, "delimiter in a quoted part, and one right after it"},
    {"x\"long, title\"y,b", true, "delimiter in a quoted part, something else after it"},
    {"x\"long, title\"", true, "delimiter in a quoted part that ends the line"},
    {"\"title\",b", false, "first delimiter right after the quoted part"},
    {"x\"title\",b", false, "the same behind a character"},
    {"\"title\"x,b", true, "first delimiter later than right after the quoted part"},
    {"\"title,b", true, "a quote that is never closed"},
    {"title,\"b\"", true, "delimiter before the first quote"},
    {"title,\"b,c\",d", true, "delimiter before the first quote, another quoted"},
};

} // namespace

TEST_P(CsvHeader, IsBelievedOrRefused) {
    const HeaderCase& header = GetParam();
    WorkerLoader loader;
    loader.setFileFormat(KCSVInterface::CsvFormat);
    QStringList errors;
    QStringList warnings;
    QString delimiter = text(",");
    EXPECT_EQ(loader.isLineFormatError(text(header.line), errors, warnings, delimiter),
              header.error);
    EXPECT_EQ(errors, header.error ? texts({"File format error.\nCannot detect delimiter."})
                                   : QStringList());
    EXPECT_EQ(warnings, QStringList());
    EXPECT_EQ(delimiter, text(","));
    EXPECT_FALSE(loader.m_delimiter_detected);
    EXPECT_EQ(loader.m_status, 0);
}

TEST_P(CsvHeader, IsReadWithTabsWhereItIsRefusedAndHasTwo) {
    const HeaderCase& header = GetParam();
    WorkerLoader loader;
    loader.setFileFormat(KCSVInterface::CsvFormat);
    QStringList errors;
    QStringList warnings;
    QString delimiter = text(",");
    const QString line = text(header.line) + text("\tc\td");
    EXPECT_FALSE(loader.isLineFormatError(line, errors, warnings, delimiter));
    EXPECT_EQ(errors, QStringList());
    // The tabs stand right after the quoted part, so the comma does not.
    const bool detected = header.error;
    EXPECT_EQ(delimiter, detected ? text("\t") : text(","));
    EXPECT_EQ(loader.m_delimiter_detected, detected);
    EXPECT_EQ(loader.m_status, detected ? 4 : 0);
}

INSTANTIATE_TEST_SUITE_P(EveryBranch, CsvHeader, ::testing::ValuesIn(header_cases));

TEST(CsvHeaderCheck, AcceptsNothingBeforeAQuoteThatOpensTheLine) {
    // With a delimiter of several characters none is the character before.
    WorkerLoader loader;
    loader.setDelimiter(text("||"));
    QStringList errors;
    QStringList warnings;
    QString delimiter = text("||");
    EXPECT_TRUE(loader.isLineFormatError(text("\"long|| title\"||b"), errors, warnings, delimiter));
}

TEST(CsvHeaderCheck, TakesAQuoteAsDelimiterForNoQuotedPart) {
    WorkerLoader loader;
    loader.setDelimiter(text("\""));
    QStringList errors;
    QStringList warnings;
    QString delimiter = text("\"");
    EXPECT_TRUE(loader.isLineFormatError(text("title\"b"), errors, warnings, delimiter));
}

TEST(CsvHeaderCheck, ForgetsAnEarlierDetectionWhenItFails) {
    WorkerLoader loader;
    loader.m_delimiter_detected = true;
    QStringList errors;
    QStringList warnings;
    QString delimiter = text("\t");
    EXPECT_TRUE(loader.isLineFormatError(text("title"), errors, warnings, delimiter));
    EXPECT_FALSE(loader.m_delimiter_detected);
}

TEST(CsvHeaderCheck, KeepsAnEarlierDetectionWhenTheQuotingExplainsTheHeader) {
    WorkerLoader loader;
    loader.m_delimiter_detected = true;
    QStringList errors;
    QStringList warnings;
    QString delimiter = text("\t");
    EXPECT_FALSE(loader.isLineFormatError(text("title\tb"), errors, warnings, delimiter));
    EXPECT_TRUE(loader.m_delimiter_detected);
}

TEST(CsvDelimiterDetection, NeedsTwoOccurrences) {
    WorkerLoader loader;
    QString delimiter = text("unchanged");
    EXPECT_FALSE(loader.autoDetectDelimiter(delimiter, text("a,b")));
    EXPECT_EQ(delimiter, text("unchanged"));
    EXPECT_TRUE(loader.autoDetectDelimiter(delimiter, text("a,,b")));
    EXPECT_EQ(delimiter, text(","));
}

TEST(CsvDelimiterDetection, PrefersTabsToCommas) {
    WorkerLoader loader;
    loader.setDelimiter(text(";"));
    QString delimiter;
    EXPECT_TRUE(loader.autoDetectDelimiter(delimiter, text("a,b,c\td\te")));
    EXPECT_EQ(delimiter, text("\t"));
    EXPECT_TRUE(loader.autoDetectDelimiter(delimiter, text("a,b,c\td")));
    EXPECT_EQ(delimiter, text(","));
}

TEST(CsvDelimiterDetection, SkipsTheConfiguredDelimiter) {
    WorkerLoader loader;
    QString delimiter;
    EXPECT_FALSE(loader.autoDetectDelimiter(delimiter, text("a\tb\tc")));
    loader.setDelimiter(text(","));
    EXPECT_FALSE(loader.autoDetectDelimiter(delimiter, text("a,b,c")));
    EXPECT_EQ(delimiter, QString());
}
