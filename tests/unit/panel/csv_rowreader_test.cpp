// What rows take of the memory, and where they end without it.
#include "runtime/panel/csvrowreader.h"

#include "runtime/panel/availablememory.h"
#include "tests/unit/panel/csvtesting.h"

#include <QTextStream>

#include <gtest/gtest.h>

namespace {

/** Rows out of a text, with just so many bytes for them. */
class ScarceRows {
public:
    ScarceRows(const char* content, qint64 bytes)
        : m_content(text(content))
        , m_stream(&m_content, QIODevice::ReadOnly)
        , m_plenty(UnlimitedMemory)
        , m_scarce(0)
        , m_lines(m_stream, m_plenty)
        , reader(m_lines, text("\t"), m_scarce) {
        m_scarce.giveBack(bytes);
    }

private:
    QString m_content;
    QTextStream m_stream;
    CsvMemory m_plenty;
    CsvMemory m_scarce;
    CsvLines m_lines;

public:
    CsvRowReader reader;
};

/** How the first row below @p above ends. */
CsvRowReader::Outcome outcomeOf(const char* content, qint64 bytes,
                                const QStringList& above = QStringList()) {
    QStringList row;
    return ScarceRows(content, bytes).reader.read(above, row);
}

void expectNeeds(qint64 bytes, const char* content, const QStringList& above = QStringList()) {
    EXPECT_EQ(outcomeOf(content, bytes, above), CsvRowReader::Row) << content;
    EXPECT_EQ(outcomeOf(content, bytes - 1, above), CsvRowReader::OutOfMemory) << content;
}

} // namespace

TEST(CsvRowMemory, IsThatOfTheListAndOfTheTextsThatAreNotShared) {
    const qint64 place = BytesOfListGrowth; // in the table, or behind the row above's width
    const char* const ten = "0123456789";
    expectNeeds(bytesOfList(0) + place + place + bytesOfText(10), ten);
    expectNeeds(bytesOfList(1) + place + bytesOfText(10), ten, texts({"x"}));
    expectNeeds(bytesOfList(9) + place, ten, texts({ten, "2", "3", "4", "5", "6", "7", "8", "9"}));
    expectNeeds(bytesOfList(1) + place + 2 * place + bytesOfText(2), "0123456789\t\tab",
                texts({ten}));
}

TEST(CsvRowMemory, IsAddedUp) {
    ScarceRows rows("ab\nab\ncd", 1000000);
    QStringList above;
    for (int i = 0; i < 3; ++i) {
        QStringList row;
        ASSERT_EQ(rows.reader.read(above, row), CsvRowReader::Row);
        above = row;
    }
    EXPECT_EQ(rows.reader.takenBytes(),
              bytesOfList(0) + 2 * bytesOfList(1) + 4 * BytesOfListGrowth + 2 * bytesOfText(2));
}

TEST(CsvRowMemory, OfAQuotedFieldIsThatOfItsCopiesFirst) {
    const qint64 list = bytesOfList(0) + BytesOfListGrowth;
    const QByteArray line(100, 'x');
    expectNeeds(list + 4 * bytesOfText(102), ("\"" + line + "\"").constData());
    const QByteArray two_lines = "\"" + line + "\n" + line + "\"";
    expectNeeds(list + 4 * bytesOfText(203), two_lines.constData());
    const QByteArray open = "\"" + line + "\n";
    EXPECT_EQ(outcomeOf(open.constData(), list + 4 * bytesOfText(102)),
              CsvRowReader::UnclosedQuote);
    EXPECT_EQ(outcomeOf(open.constData(), list + 4 * bytesOfText(102) - 1),
              CsvRowReader::OutOfMemory);
}
