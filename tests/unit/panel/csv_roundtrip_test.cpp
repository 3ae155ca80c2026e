// What the saver writes the loader reads back, and where the file format cannot
// keep that promise.
#include "tests/unit/panel/csvtesting.h"

#include <QTextCodec>

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <thread>

namespace {

/** Code units, as RapidCheck makes, shrinks and shows them. */
using Units = std::vector<quint16>;
using Rows = std::vector<std::vector<Units>>;

QString toText(const Units& units) {
    QString result;
    for (const quint16 unit : units)
        result.append(QChar(unit));
    return result;
}

QList<QStringList> toTable(const Rows& rows) {
    QList<QStringList> result;
    for (const std::vector<Units>& row : rows) {
        QStringList fields;
        for (const Units& field : row)
            fields.append(toText(field));
        result.append(fields);
    }
    return result;
}

/** Any field: often the characters that the format uses, never a carriage
 *  return. */
rc::Gen<Units> anyField() {
    const auto special = rc::gen::element<quint16>('"', '"', ',', '\t', '\n', 'a', ' ');
    const auto strange = rc::gen::element<quint16>(0, 0x0B, 0x0C, 0x85, 0x2028, 0x2029, 0xFEFF,
                                                   0xFFFE, 0xFFFF, 0xD800, 0xDC00, 0x5A0B);
    const auto any =
        rc::gen::suchThat(rc::gen::arbitrary<quint16>(), [](quint16 unit) { return unit != '\r'; });
    return rc::gen::container<Units>(rc::gen::weightedOneOf<quint16>(
        {{6, rc::gen::cast<quint16>(special)}, {2, rc::gen::cast<quint16>(strange)}, {1, any}}));
}

/** A field of a header that is believed and whose columns can be counted. */
rc::Gen<Units> headerField() {
    return rc::gen::suchThat(
        rc::gen::container<Units>(rc::gen::element<quint16>('a', 'Z', '0', ' ', 0x7A0B)),
        [](const Units& field) { return !field.empty() && field.size() <= 4; });
}

/** A header and at least one row of its width. */
Rows anyTable() {
    const size_t columns = *rc::gen::inRange<size_t>(1, 5);
    Rows rows;
    rows.push_back(*rc::gen::container<std::vector<Units>>(columns, headerField()));
    const Rows data = *rc::gen::nonEmpty(
        rc::gen::container<Rows>(rc::gen::container<std::vector<Units>>(columns, anyField())));
    for (const std::vector<Units>& row : data) {
        if (columns == 1)
            RC_PRE(!row.front().empty()); // its line would be empty, hence no row
        rows.push_back(row);
    }
    return rows;
}

/** A row of at least two fields, whatever the header's width. */
rc::Gen<std::vector<Units>> fieldsOfAnyNumber() {
    return rc::gen::exec([] {
        const size_t count = *rc::gen::inRange<size_t>(2, 8);
        return *rc::gen::container<std::vector<Units>>(count, anyField());
    });
}

class CsvRoundTrip : public ::testing::Test {
protected:
    CsvRoundTrip() : path(directory.filePath(text("t.txt"))) {}

    void configure(const char* codec, KCSVInterface::FileFormat format, bool mark) {
        for (KCSVInterface* settled :
             {static_cast<KCSVInterface*>(&saver), static_cast<KCSVInterface*>(&loader)}) {
            settled->setCodec(QTextCodec::codecForName(codec));
            settled->setFileFormat(format);
        }
        saver.setGenerateByteOrderMark(mark);
    }

    /** Saves @p rows and loads them back, with whatever the loader reports. */
    QList<QStringList> loadedBack(const QList<QStringList>& rows) {
        EXPECT_TRUE(saver.saveFile(rows, path));
        loader.openFile(path);
        return loader.m_content;
    }

    /** True if generated tables come back as they were. */
    bool keepsTables() {
        return rc::check([this] {
            const QList<QStringList> rows = toTable(anyTable());
            const QList<QStringList> loaded = loadedBack(rows);
            RC_LOG() << "saved:\n" << readable(rows) << "loaded:\n" << readable(loaded);
            RC_ASSERT(loaded == rows);
            RC_ASSERT(loader.errorMessageList().isEmpty());
            RC_ASSERT(loader.warningMessageList().isEmpty());
        });
    }

    ScratchSettings settings;
    TemporaryDirectory directory;
    const QString path;
    WorkerSaver saver;
    WorkerLoader loader;
};

} // namespace

TEST_F(CsvRoundTrip, KeepsEveryCharacterInTabFiles) {
    EXPECT_TRUE(keepsTables());
}

TEST_F(CsvRoundTrip, KeepsEveryCharacterInCommaFiles) {
    configure("UTF-16LE", KCSVInterface::CsvFormat, true);
    EXPECT_TRUE(keepsTables());
}

TEST_F(CsvRoundTrip, KeepsEveryCharacterWithoutAMark) {
    configure("UTF-16LE", KCSVInterface::TxtFormat, false);
    EXPECT_TRUE(keepsTables());
}

TEST_F(CsvRoundTrip, KeepsEveryCharacterInTheOtherByteOrder) {
    configure("UTF-16BE", KCSVInterface::CsvFormat, true);
    EXPECT_TRUE(keepsTables());
}

TEST_F(CsvRoundTrip, PadsRowsToTheHeadersWidthAndKeepsTheRest) {
    EXPECT_TRUE(rc::check([this] {
        Rows rows = anyTable();
        const size_t columns = rows.front().size();
        for (const auto& row : *rc::gen::container<Rows>(fieldsOfAnyNumber()))
            rows.push_back(row);
        const QList<QStringList> saved = toTable(rows);
        for (std::vector<Units>& row : rows)
            row.resize(std::max(row.size(), columns));
        RC_ASSERT(loadedBack(saved) == toTable(rows));
    }));
}

TEST_F(CsvRoundTrip, KeepsAMillionRows) {
    configure("UTF-8", KCSVInterface::CsvFormat, false);
    QStringList row(text("程序"));
    for (int i = 1; i < 25; ++i)
        row.append(QString::number(i));
    QList<QStringList> rows;
    for (int i = 0; i < 1000000; ++i)
        rows.append(row);
    EXPECT_TRUE(loadedBack(rows) == rows);
    EXPECT_EQ(loader.warningMessageList(), QStringList());
}

TEST_F(CsvRoundTrip, KeepsTablesInSeveralThreadsAtOnce) {
    const auto save_and_load = [this](int number) {
        const QString name = directory.filePath(QString::number(number));
        QList<QStringList> rows = table({texts({"a", "b"})});
        for (int i = 0; i < 2000; ++i)
            rows.append(texts({"same", "\"\t\n"}) + QStringList(QString::number(i * number)));
        KCSVSaver own_saver(nullptr);
        EXPECT_TRUE(own_saver.saveFile(rows, name));
        KCSVLoader own_loader(nullptr);
        EXPECT_TRUE(own_loader.openFile(name));
        EXPECT_EQ(own_loader.fileContent(), rows);
        EXPECT_EQ(own_loader.errorMessageList().value(0), text("Warning: Incorrect File Format"));
    };
    std::thread first(save_and_load, 1);
    std::thread second(save_and_load, 2);
    first.join();
    second.join();
}

TEST_F(CsvRoundTrip, KeepsBig5Texts) {
    configure("Big5", KCSVInterface::TxtFormat, true);
    const QList<QStringList> rows =
        table({texts({"設定", "群組"}), texts({"程序\t1", "\"機械泵\"\nON"}), texts({"", "泵,"})});
    EXPECT_EQ(loadedBack(rows), rows);
}

TEST_F(CsvRoundTrip, KeepsCharactersOutsideTheBasicPlaneInUtf8) {
    configure("UTF-8", KCSVInterface::CsvFormat, true);
    const QList<QStringList> rows = table({texts({"a", "b"}), texts({"😀,", "\"𠀀\""})});
    EXPECT_EQ(loadedBack(rows), rows);
}

TEST_F(CsvRoundTrip, LosesCarriageReturns) {
    const QList<QStringList> rows = table({texts({"a", "b"}), texts({"1\r", "\r\n\r2"})});
    EXPECT_EQ(loadedBack(rows), table({texts({"a", "b"}), texts({"1", "\n2"})}));
}

TEST_F(CsvRoundTrip, LosesRowsWithoutFields) {
    const QList<QStringList> rows = table({texts({"a"}), QStringList(), texts({"1"})});
    EXPECT_EQ(loadedBack(rows), table({texts({"a"}), texts({"1"})}));
}

TEST_F(CsvRoundTrip, LosesARowOfOneEmptyField) {
    const QList<QStringList> rows = table({texts({"a"}), texts({""}), texts({"1"})});
    EXPECT_EQ(loadedBack(rows), table({texts({"a"}), texts({"1"})}));
}

TEST_F(CsvRoundTrip, LosesATableOfOneLine) {
    EXPECT_EQ(loadedBack(table({texts({"a", "b"})})), QList<QStringList>());
    EXPECT_EQ(loader.errorMessageList(), texts({"No content found in the imported file."}));
}

TEST_F(CsvRoundTrip, LosesATableWithOneLongColumn) {
    EXPECT_EQ(loadedBack(table({texts({"temperature"}), texts({"1"})})), QList<QStringList>());
    EXPECT_EQ(loader.errorMessageList(), texts({"File format error.\nCannot detect delimiter."}));
}

TEST_F(CsvRoundTrip, PadsEveryRowUnderAHeaderThatHoldsTheDelimiter) {
    EXPECT_EQ(loadedBack(table({texts({"a\tb", "c"}), texts({"1", "2"})})),
              table({texts({"a\tb", "c"}), texts({"1", "2", ""})}));
}

TEST_F(CsvRoundTrip, LosesAMarkThatBeginsAFileWithoutOne) {
    configure("UTF-16LE", KCSVInterface::TxtFormat, false);
    EXPECT_EQ(loadedBack(table({texts({"\xEF\xBB\xBF"
                                       "a"}),
                                texts({"1"})})),
              table({texts({"a"}), texts({"1"})}));
}

TEST_F(CsvRoundTrip, TakesANulAfterTheMarkForUtf32) {
    const QList<QStringList> rows =
        table({QStringList(QString(1, QChar(0)) + text("a")), texts({"1"})});
    EXPECT_NE(loadedBack(rows), rows);
}

TEST_F(CsvRoundTrip, LosesHalfCharactersInUtf8) {
    configure("UTF-8", KCSVInterface::TxtFormat, true);
    const QString half(1, QChar(0xD800));
    EXPECT_NE(loadedBack(table({texts({"a"}), QStringList(half)})).value(1), QStringList(half));
}

TEST_F(CsvRoundTrip, WritesAQuestionMarkForWhatTheCodecLacks) {
    configure("Big5", KCSVInterface::TxtFormat, true);
    EXPECT_EQ(loadedBack(table({texts({"a"}), texts({"1😀"})})).value(1).value(0).at(1),
              QLatin1Char('?'));
}

TEST_F(CsvRoundTrip, CannotReadQuotesBackThatWereNotDoubled) {
    saver.m_quote_when_needed = false;
    EXPECT_EQ(loadedBack(table({texts({"a"}), texts({"1\"2"})})), table({texts({"a"})}));
    EXPECT_EQ(loader.errorMessageList(), texts({"Format error at line 3"}));
}

TEST_F(CsvRoundTrip, CannotTellFieldsApartWhenADelimiterOverlapsThem) {
    saver.setDelimiter(text("aa"));
    loader.setDelimiter(text("aa"));
    EXPECT_EQ(loadedBack(table({texts({"x", "y"}), texts({"a", "b"})})).value(1),
              texts({"", "ab"}));
}
