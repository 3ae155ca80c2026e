// What the loader makes of the files in tests/data/csv.
#include "tests/unit/panel/csvtesting.h"

#include <QTextCodec>

#include <gtest/gtest.h>

#include <ostream>

namespace {

struct Golden {
    const char* file;
    const char* codec;
    KCSVInterface::FileFormat format;
    QList<QStringList> rows;
    QStringList errors;
    QStringList warnings;
};

void PrintTo(const Golden& golden, std::ostream* stream) {
    *stream << golden.file << " in " << golden.codec;
}

class CsvGolden : public ::testing::TestWithParam<Golden> {
protected:
    ScratchSettings settings;
};

QString pathOf(const char* file) {
    return QString::fromLatin1(TEST_DATA_DIR "/csv/") + text(file);
}

const KCSVInterface::FileFormat txt = KCSVInterface::TxtFormat;
const KCSVInterface::FileFormat csv = KCSVInterface::CsvFormat;
const char utf16le[] = "UTF-16LE";

QList<QStringList> small() {
    return table({texts({"名稱", "溫度"}), texts({"程序1", "100"}), texts({"程序2", "200"})});
}

QStringList noContent() {
    return texts({"No content found in the imported file."});
}

QList<Golden> encodings() {
    return QList<Golden>() << Golden{"utf16le_mark.txt", utf16le, txt, small(), {}, {}}
                           << Golden{"utf16le_no_mark.txt", utf16le, txt, small(), {}, {}}
                           // A mark overrules the codec; without one the codec decides, and
                           // in the wrong one a file has no line ends.
                           << Golden{"utf16be_mark.txt", utf16le, txt, small(), {}, {}}
                           << Golden{"utf16be_no_mark.txt", "UTF-16BE", txt, small(), {}, {}}
                           << Golden{"utf16be_no_mark.txt", utf16le, txt, {}, noContent(), {}}
                           << Golden{"utf16le_mark.txt", "Big5", txt, small(), {}, {}}
                           << Golden{"utf8_mark.csv", utf16le, csv, small(), {}, {}}
                           << Golden{"big5.txt", "Big5", txt, small(), {}, {}}
                           << Golden{"big5.txt", utf16le, txt, {}, noContent(), {}}
                           << Golden{"comma.csv", utf16le, csv, small(), {}, {}};
}

QList<Golden> quotes() {
    return QList<Golden>()
           << Golden{"quoted_delimiters.csv",
                     utf16le,
                     csv,
                     table({texts({"a", "b"}), texts({"x,y", ","}), texts({",,", "1"})}),
                     {},
                     {}}
           << Golden{"doubled_quotes.csv",
                     utf16le,
                     csv,
                     table({texts({"a", "b"}), texts({"say \"hi\"", "\""}), texts({"\"", ""})}),
                     {},
                     {}}
           << Golden{"line_breaks.txt",
                     utf16le,
                     txt,
                     table({texts({"a", "b"}), texts({"1\n\n2", "\n"}), texts({"3", ""})}),
                     {},
                     texts({"Line 6 is 1 columns short of header."})}
           << Golden{"lone_quote_at_end.txt",
                     utf16le,
                     txt,
                     table({texts({"a", "b"}), texts({"1", "2"})}),
                     texts({"Format error at line 4"}),
                     {}}
           << Golden{"quote_never_closed.txt",
                     utf16le,
                     txt,
                     table({texts({"a", "b"}), texts({"1", "5\" pipe"})}),
                     texts({"Format error at line 4"}),
                     {}};
}

QList<Golden> lines() {
    const QList<QStringList> two = table({texts({"a", "b"}), texts({"1", "2"})});
    return QList<Golden>() << Golden{"crlf.txt", utf16le, txt, small(), {}, {}}
                           << Golden{"lone_carriage_returns.txt",
                                     utf16le,
                                     txt,
                                     table({texts({"a", "b"}), texts({"11", "2"}),
                                            texts({"3", "4"})}),
                                     {},
                                     {}}
                           << Golden{"empty_lines.txt",
                                     utf16le,
                                     txt,
                                     two + table({texts({"3", ""})}),
                                     {},
                                     texts({"Line 6 is 1 columns short of header."})}
                           << Golden{"no_final_line_end.txt", utf16le, txt, two, {}, {}}
                           << Golden{"header_only.txt", utf16le, txt, {}, noContent(), {}}
                           << Golden{"empty.txt", utf16le, txt, {}, noContent(), {}}
                           << Golden{"only_mark.txt", utf16le, txt, {}, noContent(), {}};
}

QList<Golden> columns() {
    const QStringList three = texts({"1", "2", "3"});
    return QList<Golden>() << Golden{"too_few_columns.txt",
                                     utf16le,
                                     txt,
                                     table({texts({"a", "b", "c"}), texts({"1", "2", ""}),
                                            texts({"1", "", ""}), three}),
                                     {},
                                     texts({"Line 2 is 1 columns short of header.",
                                            "Line 3 is 2 columns short of header."})}
                           << Golden{"too_many_columns.txt",
                                     utf16le,
                                     txt,
                                     table({texts({"a", "b"}), three, texts({"1", "2"}),
                                            texts({"1", "2", "3", "4"})}),
                                     {},
                                     texts({"Line 2 is 1 columns more of header.",
                                            "Line 4 is 2 columns more of header."})}
                           << Golden{"wrong_delimiter.txt",
                                     utf16le,
                                     txt,
                                     table({texts({"first", "second", "third"}), three,
                                            texts({"4", "5", ""})}),
                                     {},
                                     texts({"Line 3 is 1 columns short of header."})}
                           << Golden{"no_delimiter.txt",
                                     utf16le,
                                     txt,
                                     {},
                                     texts({"File format error.\nCannot detect delimiter."}),
                                     {}};
}

} // namespace

TEST_P(CsvGolden, LoadsAsItAlwaysDid) {
    const Golden& golden = GetParam();
    WorkerLoader loader;
    loader.setFileFormat(golden.format);
    loader.setCodec(QTextCodec::codecForName(golden.codec));
    EXPECT_EQ(loader.openFile(pathOf(golden.file)), golden.errors.isEmpty());
    EXPECT_EQ(loader.m_content, golden.rows) << readable(loader.m_content);
    EXPECT_EQ(loader.errorMessageList(), golden.errors)
        << loader.errorMessageList().join(QLatin1String("; ")).toStdString();
    EXPECT_EQ(loader.warningMessageList(), golden.warnings);
    EXPECT_EQ(loader.m_status, golden.warnings.isEmpty() ? 3 : 5);
}

INSTANTIATE_TEST_SUITE_P(Encodings, CsvGolden, ::testing::ValuesIn(encodings()));
INSTANTIATE_TEST_SUITE_P(Quotes, CsvGolden, ::testing::ValuesIn(quotes()));
INSTANTIATE_TEST_SUITE_P(Lines, CsvGolden, ::testing::ValuesIn(lines()));
INSTANTIATE_TEST_SUITE_P(Columns, CsvGolden, ::testing::ValuesIn(columns()));

TEST(CsvGoldenErrors, ThirtyAreAllListed) {
    ScratchSettings settings;
    WorkerLoader loader;
    loader.m_tolerate_column_mismatch = false;
    EXPECT_FALSE(loader.openFile(pathOf("thirty_errors.txt")));
    ASSERT_EQ(loader.errorMessageList().size(), 30);
    EXPECT_EQ(loader.errorMessageList().first(), text("Line 2 format error."));
    EXPECT_EQ(loader.errorMessageList().last(), text("Line 31 format error."));
}
