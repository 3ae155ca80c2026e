// Programs that nobody thought of, and lines that are not perfect.
#include "tests/support/goldenprograms.h"
#include "tests/unit/dmc50v3/transfer/transferfixture.h"

#include <QTextCodec>

#include <random>
#include <vector>

namespace {

class ExporterRandom : public TransferFixture {
protected:
    int upTo(int limit) { return int(m_random() % quint32(limit + 1)); }

    QByteArray randomImage() {
        QList<quint32> values;
        for (int i = 0; i < 24; ++i)
            values.append(m_random() >> upTo(31));
        return doubleWordImage(values);
    }

    /** What a push leaves of @p image. */
    static QByteArray withoutThirdBytes(QByteArray image) {
        for (int i = 2; i < image.size(); i += 4)
            image[i] = '\0';
        return image;
    }

    void pull(int program_id, int count) {
        read(program_id, count);
        m_environment.pass(2000);
    }
    void push(int program_id, int count) {
        write(program_id, count);
        m_environment.pass(2000);
    }

    /** A fault on one reply of a hundred: silence, a flipped bit, a lost tail,
     *  noise in front, another station. */
    QByteArray unreliable(const QByteArray& request) {
        QByteArray reply = m_controller.answer(request);
        if (upTo(99) != 0)
            return reply;
        ++m_faults;
        const int at = upTo(reply.size() - 1);
        switch (upTo(4)) {
        case 0:
            return silence();
        case 1:
            reply[at] = char(reply.at(at) ^ (1 << upTo(6)));
            return reply;
        case 2:
            return reply.left(at);
        case 3:
            return "\x55" + reply;
        default:
            return cplFrame("02" + reply.mid(3, reply.size() - 8));
        }
    }

    /** The values of the file's rows in controller images, by program number. */
    std::vector<std::pair<int, QByteArray>> rowsInFile(int program_id) const {
        const QString text =
            QTextCodec::codecForName("UTF-16LE")->toUnicode(m_stick.read(file(program_id)).mid(2));
        const QStringList lines = text.split(QLatin1Char('\n'));
        std::vector<std::pair<int, QByteArray>> rows;
        for (int i = 1; i < lines.size() - 1; ++i) {
            const QStringList fields = lines.at(i).split(QLatin1Char('\t'));
            QList<quint32> values;
            for (int column = 1; column < fields.size(); ++column)
                values.append(fields.at(column).toUInt());
            rows.push_back(std::make_pair(fields.at(0).mid(2).toInt(), doubleWordImage(values)));
        }
        return rows;
    }

    std::mt19937 m_random{20260731};
    int m_faults = 0;
};

} // namespace

TEST_F(ExporterRandom, AThousandTablesComeBackAsTheyWentUpToTheThirdByte) {
    for (int table = 0; table < 1000; ++table) {
        const int count = 1 + upTo(5);
        QList<QByteArray> images;
        for (int number = 1; number <= count; ++number) {
            images.append(randomImage());
            setProgram(number, images.last());
        }
        pull(7, count);
        push(7, count);
        for (int number = 1; number <= count; ++number)
            ASSERT_EQ(program(number), withoutThirdBytes(images.at(number - 1))) << table;
        pull(8, count);
        push(8, count);
        pull(9, count);
        ASSERT_EQ(m_stick.read(file(9)), m_stick.read(file(8))) << table;
    }
    EXPECT_EQ(readTag("VVT_ERROR0") + readTag("VVT_ERROR1"), 0);
}

TEST_F(ExporterRandom, OnAnUnreliableLineNoWrongValueIsReportedAsRight) {
    int completed = 0;
    m_port.m_retries = 2;
    m_port.setAnswer([this](const QByteArray& request) { return unreliable(request); });
    for (int run = 0; run < 50; ++run) {
        for (int number = 1; number <= 32; ++number)
            setProgram(number, withoutThirdBytes(randomImage()));
        writeTag("VVT_ERROR1", 0);
        pull(7, 32);
        if (readTag("VVT_ERROR1") == 1)
            continue;
        ++completed;
        const auto rows = rowsInFile(7);
        ASSERT_EQ(rows.size(), 32u);
        for (const auto& row : rows)
            ASSERT_EQ(row.second, program(row.first)) << run;

        for (int number = 1; number <= 32; ++number)
            setProgram(number, imageOf(0));
        push(7, 32);
        for (const auto& row : rows)
            ASSERT_TRUE(readTag("VVT_ERROR0") == 1 || row.second == program(row.first)) << run;
    }
    EXPECT_GT(m_faults, 10);
    EXPECT_GT(completed, 10);
}
