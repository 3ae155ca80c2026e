// What the panel is shown while a transfer pauses, and when it has ended: one line
// for every sleep, and one for the end.
#include "tests/unit/dmc50v3/transfer/transferfixture.h"

#include <initializer_list>

namespace {

class ExporterDisplay : public TransferFixture {
protected:
    ExporterDisplay() {
        m_environment.m_before_sleep = [this](quint32 msecs) {
            m_shown.append(QString::fromLatin1("%1: ").arg(msecs) + display());
        };
    }

    /** Such as "write on 0 error, read off 0, reserved". */
    QString display() {
        return QString::fromLatin1("write %1, read %2%3")
            .arg(transfer("VVT_ENABLE0", "VVT_PROGRESS0", "VVT_ERROR0"),
                 transfer("VVT_ENABLE1", "VVT_PROGRESS1", "VVT_ERROR1"),
                 QLatin1String(isProgramReading() ? ", reserved" : ""));
    }

    /** What was shown until now, and what is shown now. */
    QStringList shown() { return m_shown + QStringList(display()); }

    void expectShown(std::initializer_list<const char*> lines) {
        QStringList expected;
        for (const char* line : lines)
            expected.append(QLatin1String(line));
        EXPECT_EQ(shown().join(QLatin1String("\n")).toStdString(),
                  expected.join(QLatin1String("\n")).toStdString());
    }

    /** One row that ends after @p columns. */
    void saveRow(int columns) {
        QByteArray line = "row" + QByteArray("\t1").repeated(columns - 1) + "\n";
        QByteArray utf16("\xFF\xFE");
        for (char letter : line + line)
            utf16.append(letter).append('\0');
        m_stick.write(file(7), utf16);
    }

private:
    QString transfer(const char* enable, const char* progress, const char* error) {
        return QString::fromLatin1("%1 %2%3")
            .arg(QLatin1String(readTag(enable) == 1 ? "on" : "off"))
            .arg(readTag(progress))
            .arg(QLatin1String(readTag(error) == 1 ? " error" : ""));
    }

    QStringList m_shown; // of one thread at a time
};

} // namespace

TEST_F(ExporterDisplay, OfAReadWithoutAStick) {
    m_environment.pullStick();
    read(7, 1);
    expectShown({"2000: write off 0, read on 0, reserved", "write off 0, read off 0"});
}

TEST_F(ExporterDisplay, OfARead) {
    read(7, 1);
    expectShown({"write off 0, read on 100"});
}

TEST_F(ExporterDisplay, OfATemplate) {
    read(-1, 1);
    expectShown({"write off 0, read on 100"});
    EXPECT_TRUE(m_notices.notices().isEmpty());
}

TEST_F(ExporterDisplay, OfAReadThatCannotBeSaved) {
    m_stick.makeDirectory(file(7));
    read(7, 1);
    expectShown({"write off 0, read off 100 error"});
}

TEST_F(ExporterDisplay, OfAReadThatTakesTooLong) {
    qint64 now = 0;
    m_environment.m_read_clock = [&] { return now += 5001; };
    read(7, 1);
    expectShown({"write off 0, read on 100 error"});
}

TEST_F(ExporterDisplay, OfAWriteWithoutAStick) {
    m_environment.pullStick();
    m_exporter->outputErrorLog(QStringList(), 1);
    write(7, 1);
    expectShown({"500: write off 0 error, read off 0", "2000: write on 0, read off 0",
                 "write off 0, read off 0"});
}

TEST_F(ExporterDisplay, OfAWriteWithoutAFile) {
    write(7, 1);
    expectShown({"500: write off 0, read off 0", "2000: write on 0 error, read off 0",
                 "write off 0 error, read off 0"});
}

TEST_F(ExporterDisplay, OfAWriteFromAFileWithoutRows) {
    m_stick.write(file(7), QByteArray("\xFF\xFE\n\0\n\0", 6));
    write(7, 1);
    expectShown({"500: write off 0, read off 0", "2000: write on 0, read off 0",
                 "write off 0 error, read off 0"});
}

TEST_F(ExporterDisplay, OfAWriteFromAFileWithTooFewFields) {
    saveRow(24);
    write(7, 1);
    expectShown({"500: write off 0, read off 0", "2000: write on 0, read off 0",
                 "write off 0 error, read off 0"});
}

TEST_F(ExporterDisplay, OfAWriteFromAFileWithJustEnoughFields) {
    saveRow(25);
    write(7, 0);
    expectShown({"500: write off 0, read off 0", "2000: write on 100, read off 0",
                 "write off 0, read off 0"});
}

TEST_F(ExporterDisplay, OfAWriteWithABadField) {
    saveTable(7, 1);
    QByteArray bad = m_stick.read(file(7));
    bad[bad.size() - 4] = 'x'; // the last value
    m_stick.write(file(7), bad);
    write(7, 1);
    expectShown({"500: write off 0, read off 0", "2000: write on 0 error, read off 0",
                 "write off 0 error, read off 0"});
}

TEST_F(ExporterDisplay, OfALoggedErrorThatThePanelClearsAtOnce) {
    m_environment.m_before_sleep = [this](quint32 msecs) {
        if (msecs == 2000)
            m_exporter->resetWritingToDMC50Error();
    };
    write(7, 1); // there is no file
    expectShown({"write off 0, read off 0"});
}

TEST_F(ExporterDisplay, OfAWriteToASilentController) {
    saveTable(7, 32);
    m_port.m_timeout = 9000;
    m_port.m_retries = 1;
    m_port.setAnswer([this](const QByteArray&) {
        m_clock.sleepMsecs(quint32(m_port.m_timeout));
        return QByteArray();
    });
    write(7, 32);
    // The first frame's pairs may leave the queue before the first look at it.
    const QStringList lines =
        shown().replaceInStrings(QLatin1String("on 3"), QLatin1String("on 0"));
    const int polls = lines.count(QLatin1String("1000: write on 0, read off 0"));
    EXPECT_TRUE(polls == 6 || polls == 7) << polls;
    EXPECT_EQ(lines.size(), 1 + polls + 2);
    EXPECT_EQ(lines.at(lines.size() - 2), QLatin1String("2000: write on 0 error, read off 0"));
    EXPECT_EQ(lines.last(), QLatin1String("write off 0 error, read off 0"));
}

TEST_F(ExporterDisplay, OfAStartWhileATransferOfTheOtherKindIsShown) {
    saveTable(8, 1);
    read(7, 1);
    write(8, 0);
    expectShown({"500: write off 0, read on 100", "2000: write on 100, read on 100",
                 "write off 0, read on 100"});
}
