#include "runtime/panel/csvlines.h"

#include "runtime/panel/availablememory.h"
#include "runtime/panel/csvpieces.h"
#include "tests/unit/panel/csvtesting.h"

#include <QBuffer>
#include <QTextCodec>
#include <QTextStream>

#include <gtest/gtest.h>

#include <random>

namespace {

QStringList taken(CsvLines& lines) {
    QStringList result;
    for (TextSpan line; lines.next(line);)
        result.append(line.toString());
    return result;
}

/** A given number of bytes, of which each 1,048,576th ends a line. */
class LinesOfAMebibyte : public QIODevice {
public:
    explicit LinesOfAMebibyte(qint64 bytes) : m_left(bytes) {}
    bool isSequential() const override { return true; }

protected:
    qint64 readData(char* data, qint64 max_size) override {
        const qint64 to_line_end = (m_left - 1) % (1024 * 1024) + 1;
        const qint64 size = qMin(max_size, qMin(m_left, to_line_end));
        std::fill(data, data + size, 'x');
        m_left -= size;
        if (size > 0 && m_left % (1024 * 1024) == 0)
            data[size - 1] = '\n';
        return size;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    qint64 m_left;
};

QStringList readByReadLine(QTextStream& stream) {
    QStringList result;
    for (QString line = stream.readLine(); !line.isNull(); line = stream.readLine())
        result.append(line);
    return result;
}

QStringList piecesOf(const QString& line, const QString& delimiter) {
    CsvPieces pieces(delimiter);
    pieces.start(TextSpan(line));
    QStringList result;
    for (TextSpan piece; pieces.next(piece);)
        result.append(piece.toString());
    return result;
}

/** A text of @p length characters out of @p alphabet. */
QString randomText(std::mt19937& random, const char* alphabet, int length) {
    std::uniform_int_distribution<size_t> index(0, qstrlen(alphabet) - 1);
    QString result;
    for (int i = 0; i < length; ++i)
        result.append(QLatin1Char(alphabet[index(random)]));
    return result;
}

void expectReadLinesOwnLines(QString source) {
    QTextStream reference(&source, QIODevice::ReadOnly);
    QTextStream stream(&source, QIODevice::ReadOnly);
    CsvMemory memory(UnlimitedMemory);
    CsvLines lines(stream, memory);
    const QStringList expected = readByReadLine(reference);
    EXPECT_EQ(lines.count(), expected.size());
    EXPECT_EQ(taken(lines), expected) << source.toUtf8().toPercentEncoding().constData();
}

} // namespace

TEST(CsvLines, AreThoseOfReadLine) {
    std::mt19937 random(7);
    for (int length = 0; length < 12; ++length)
        for (int i = 0; i < 200; ++i)
            expectReadLinesOwnLines(randomText(random, "ab\n\r", length));
}

TEST(CsvLines, AreThoseOfReadLineInAFileOpenedAsText) {
    std::mt19937 random(8);
    for (int i = 0; i < 500; ++i) {
        QByteArray bytes = randomText(random, "ab\n\r", i % 15).toLatin1();
        QBuffer reference_buffer(&bytes);
        QBuffer buffer(&bytes);
        ASSERT_TRUE(reference_buffer.open(QIODevice::ReadOnly | QIODevice::Text));
        ASSERT_TRUE(buffer.open(QIODevice::ReadOnly | QIODevice::Text));
        QTextStream reference(&reference_buffer);
        QTextStream stream(&buffer);
        CsvMemory memory(UnlimitedMemory);
        CsvLines lines(stream, memory);
        EXPECT_EQ(taken(lines), readByReadLine(reference)) << bytes.toPercentEncoding().constData();
    }
}

TEST(CsvLines, CrossTheBlocksTheyAreReadIn) {
    QString source;
    for (int length = 1; source.size() < 2000000; length = length * 5 / 3 + 1)
        source += QString(length, QLatin1Char('x')) + QLatin1String("\r\n");
    expectReadLinesOwnLines(source);
    for (int i = 0; i < 300000; ++i)
        source += QString::number(i) + QLatin1Char('\n');
    expectReadLinesOwnLines(source);
}

TEST(CsvLines, EndTheirBlocksAnywhere) {
    const int block = 256 * 1024;
    for (int length = block - 3; length < block + 3; ++length) {
        const QString line(length, QLatin1Char('x'));
        expectReadLinesOwnLines(line);
        expectReadLinesOwnLines(line + QLatin1String("\n"));
        expectReadLinesOwnLines(line + QLatin1String("\r\n\r\ny"));
    }
}

TEST(CsvLines, AreAtMost256MiCharactersLong) {
    for (qint64 surplus : {0, 1}) {
        LinesOfAMebibyte device(CsvLines::MaxCharacters + surplus);
        ASSERT_TRUE(device.open(QIODevice::ReadOnly));
        QTextStream stream(&device);
        stream.setCodec("ISO-8859-1");
        CsvMemory memory(UnlimitedMemory);
        const CsvLines lines(stream, memory);
        EXPECT_EQ(lines.isTooLong(), surplus == 1);
        EXPECT_EQ(lines.count(), surplus == 1 ? 0 : 256);
    }
}

TEST(CsvLines, ShowTheirFirstBeforeItIsTaken) {
    QString source = text("first\r\nsecond");
    QTextStream stream(&source, QIODevice::ReadOnly);
    CsvMemory memory(UnlimitedMemory);
    CsvLines lines(stream, memory);
    EXPECT_EQ(lines.first(), text("first"));
    EXPECT_EQ(taken(lines), texts({"first", "second"}));
}

TEST(CsvPieces, AreThoseOfSplit) {
    std::mt19937 random(9);
    for (const char* delimiter : {",", ",,", "a,", "", "\t"})
        for (int i = 0; i < 500; ++i) {
            const QString line = randomText(random, "a,,\t", i % 10);
            EXPECT_EQ(piecesOf(line, text(delimiter)), line.split(text(delimiter)))
                << line.toStdString() << " at " << delimiter;
        }
}
