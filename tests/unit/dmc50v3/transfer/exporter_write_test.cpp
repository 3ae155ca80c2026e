// From a file to the controller.
#include "tests/support/goldenprograms.h"
#include "tests/unit/dmc50v3/transfer/transferfixture.h"

#include <QTextCodec>

#include <atomic>
#include <vector>

namespace {

class ExporterWrite : public TransferFixture {
protected:
    /** Writes @p rows, the header first, as a program file. */
    void save(int program_id, const QList<QStringList>& rows) {
        QString text;
        for (int i = 0; i < rows.size(); ++i)
            text += rows.at(i).join(QLatin1String("\t")) + QLatin1Char('\n');
        saveText(program_id, text);
    }

    void saveText(int program_id, const QString& text) {
        QTextCodec::ConverterState no_mark(QTextCodec::IgnoreHeader);
        m_stick.write(file(program_id),
                      "\xFF\xFE" + QTextCodec::codecForName("UTF-16LE")
                                       ->fromUnicode(text.constData(), text.size(), &no_mark));
    }

    /** Header and @p count rows whose values are all the row's number. */
    static QList<QStringList> table(int count) {
        QList<QStringList> rows = goldenRows(QLatin1String("PROG_0.txt"));
        for (int number = 1; number <= count; ++number) {
            QStringList row(QLatin1String("label"));
            for (int column = 1; column <= 24; ++column)
                row.append(QString::number(number));
            rows.append(row);
        }
        return rows;
    }

    QString log(int program_id) const {
        return QString::fromLocal8Bit(
            m_stick.read(QString::fromLatin1("WRITE_PROG_%1_ERROR.txt").arg(program_id)));
    }

    bool nothingWasSent() const { return m_port.requests().isEmpty(); }

    /** Writes @p count programs while the polling thread keeps reading a tag, and
     *  notes at each of its requests whether the panel is shown 100 %. */
    void writeAndWatchTheEnd(int program_id, int count) {
        m_shown_first = 0;
        m_port.setAnswer([this](const QByteArray& request) {
            if (readTag("VVT_PROGRESS0") == 100) {
                m_shown_last = m_clock.msecsSinceBoot();
                if (m_shown_first == 0)
                    m_shown_first = m_clock.msecsSinceBoot();
            }
            return m_controller.answer(request);
        });
        choose(program_id, count);
        QList<CommunicatorCommand> polled;
        polled.append(
            CommunicatorCommand(QLatin1String("NA1000"), CommunicatorCommand::DoubleWord, 1));
        m_driver->setSessionCommand(polled);
        writeTag("VVT_ENABLE0", 1);
        waitForWorker();
    }

    // When the polling thread first and last saw 100 %; that thread writes them.
    std::atomic<qint64> m_shown_first{0};
    std::atomic<qint64> m_shown_last{0};
};

} // namespace

TEST_F(ExporterWrite, EveryRowGoesToItsSlot) {
    save(7, table(32));
    write(7, 32);
    for (int number = 1; number <= 32; ++number)
        EXPECT_EQ(program(number), imageOf(quint32(number))) << number;
    EXPECT_EQ(readTag("VVT_ERROR0"), 0);
    expectIdle();
}

TEST_F(ExporterWrite, TheThirdByteArrivesAsZero) {
    QList<QStringList> rows = table(1);
    rows[1][1] = QLatin1String("70000");
    rows[1][2] = QLatin1String("65537");
    rows[1][3] = QLatin1String("4294967295");
    save(7, rows);
    write(7, 1);
    EXPECT_EQ(m_controller.value(1, slotAddress(1)), 4464u);
    EXPECT_EQ(m_controller.value(1, slotAddress(1) + 1), 1u);
    EXPECT_EQ(m_controller.value(1, slotAddress(1) + 2), 0xFF00FFFFu);
}

TEST_F(ExporterWrite, OnlyAsManyRowsAsTheCountAreCheckedAndWritten) {
    QList<QStringList> rows = table(5);
    rows[4][1] = QLatin1String("bad");
    save(7, rows);
    write(7, 3);
    EXPECT_EQ(program(3), imageOf(3));
    EXPECT_EQ(program(4), imageOf(0));
    EXPECT_EQ(readTag("VVT_ERROR0"), 0);
}

TEST_F(ExporterWrite, WithoutACountNothingIsWrittenAndTheTransferSucceeds) {
    save(7, table(3));
    write(7, 0);
    EXPECT_TRUE(nothingWasSent());
    EXPECT_EQ(readTag("VVT_ERROR0"), 0);
    expectIdle();
}

TEST_F(ExporterWrite, SuccessIsShownAsAHundredPercentForTwoSeconds) {
    save(7, table(3));
    for (int count : {0, 3}) {
        writeAndWatchTheEnd(7, count);
        EXPECT_GT(m_shown_first, 0) << count;
        EXPECT_GT(m_shown_last - m_shown_first, 1900) << count; // the polls are 10 ms apart
        EXPECT_LE(m_shown_last - m_shown_first, 2000) << count;
        expectIdle();
    }
}

TEST_F(ExporterWrite, ASlotWithoutATagIsSkippedAndRowsAreNotShifted) {
    leaveOut(2);
    save(7, table(3));
    write(7, 3);
    EXPECT_EQ(program(1), imageOf(1));
    EXPECT_EQ(program(2), imageOf(0));
    EXPECT_EQ(program(3), imageOf(3));
}

TEST_F(ExporterWrite, InvalidFieldsAreAllListedAndNothingIsWritten) {
    QList<QStringList> rows = table(3);
    rows[1][1] = QLatin1String("1.5");
    rows[2][3] = QLatin1String("abc");
    rows[3][24] = QString();
    save(7, rows);
    write(7, 3);
    EXPECT_EQ(log(7),
              QLatin1String("The value [1.5] at row 0 and column 1 is invalid, please check it.\n\n"
                            "The value [abc] at row 1 and column 3 is invalid, please check it.\n\n"
                            "The value [] at row 2 and column 24 is invalid, please check it.\n"));
    EXPECT_TRUE(nothingWasSent());
    EXPECT_EQ(readTag("VVT_ERROR0"), 1);
    EXPECT_EQ(m_environment.pendingCalls(), 0);
    expectIdle();
}

TEST_F(ExporterWrite, AFirstRowOfTwentySixFieldsPasses) {
    QList<QStringList> rows = table(1);
    rows[1].append(QLatin1String("extra")); // the loader warns, but that is no error
    save(7, rows);
    write(7, 1);
    EXPECT_EQ(program(1), imageOf(1));
    EXPECT_EQ(readTag("VVT_ERROR0"), 0);
    EXPECT_TRUE(m_notices.notices().isEmpty());
}

TEST_F(ExporterWrite, AShortLaterRowIsPaddedAndItsFirstEmptyFieldReported) {
    QList<QStringList> rows = table(2);
    rows[2] = rows.at(2).mid(0, 10);
    save(7, rows);
    write(7, 2);
    EXPECT_TRUE(log(7).startsWith(QLatin1String("The value [] at row 1 and column 10 is invalid")));
    EXPECT_EQ(readTag("VVT_ERROR0"), 1);
}

TEST_F(ExporterWrite, TheFieldCountIsCheckedOnTheFirstRowOnly) {
    QList<QStringList> rows = table(1);
    rows[0] = rows.at(0).mid(0, 20);
    rows[1] = rows.at(1).mid(0, 20);
    save(7, rows);
    write(7, 1);
    EXPECT_EQ(m_notices.notices(), QStringList(QLatin1String("DMC50|The field Num is not 25.|1")));
    EXPECT_FALSE(m_stick.contains(QLatin1String("WRITE_PROG_7_ERROR.txt")));
    EXPECT_EQ(readTag("VVT_ERROR0"), 1);
    EXPECT_TRUE(nothingWasSent());
    expectIdle();
}

TEST_F(ExporterWrite, AShortRowAfterALongFirstOneIsRefusedField) {
    QList<QStringList> rows = table(2);
    rows[0] = rows.at(0).mid(0, 20);
    rows[2] = rows.at(2).mid(0, 20);
    save(7, rows);
    write(7, 2);
    EXPECT_TRUE(m_notices.notices().isEmpty());
    EXPECT_EQ(log(7).count(QLatin1String("is invalid, please check it.")), 5);
}

TEST_F(ExporterWrite, AFileOfEmptyLinesIsAnEmptyNotice) {
    saveText(7, QLatin1String("\n\n\n"));
    write(7, 1);
    EXPECT_EQ(m_notices.notices(), QStringList(QLatin1String("DMC50||1")));
    EXPECT_FALSE(m_stick.contains(QLatin1String("WRITE_PROG_7_ERROR.txt")));
    EXPECT_EQ(readTag("VVT_ERROR0"), 1);
    expectIdle();
}

TEST_F(ExporterWrite, AHeaderAndAnEmptyLineWriteNothingAndSucceed) {
    saveText(7, goldenRows(QLatin1String("PROG_0.txt")).at(0).join(QLatin1String("\t")) +
                    QLatin1String("\n\n"));
    write(7, 3);
    EXPECT_EQ(readTag("VVT_ERROR0"), 0);
    EXPECT_TRUE(nothingWasSent());
    expectIdle();
}

TEST_F(ExporterWrite, AMissingFileIsLogged) {
    write(7, 1);
    EXPECT_EQ(log(7), QLatin1String("The file name is empty.\nFile cannot be loaded.\n"
                                    "Please select a file."));
    EXPECT_EQ(readTag("VVT_ERROR0"), 1);
    EXPECT_TRUE(m_notices.notices().isEmpty());
    expectIdle();
}

TEST_F(ExporterWrite, AFileWithOnlyAHeaderIsLogged) {
    m_stick.write(file(7), goldenFile(QLatin1String("PROG_0.txt")));
    write(7, 1);
    EXPECT_TRUE(log(7).startsWith(QLatin1String("No content found in the imported file.")));
    EXPECT_EQ(readTag("VVT_ERROR0"), 1);
}

TEST_F(ExporterWrite, WithoutAStickItEndsAfterTwoSecondsWithoutAnError) {
    m_environment.pullStick();
    const qint64 start = m_clock.msecsSinceBoot();
    write(7, 1);
    EXPECT_GE(m_clock.msecsSinceBoot() - start, 500 + 2000);
    EXPECT_EQ(readTag("VVT_ERROR0"), 0);
    EXPECT_EQ(m_notices.notices().size(), 1);
    expectIdle();
}

TEST_F(ExporterWrite, CallerWaitsHalfASecondBeforeTheStart) {
    m_stick.write(file(7), "");
    choose(7, 1);
    const qint64 start = m_clock.msecsSinceBoot();
    writeTag("VVT_ENABLE0", 1);
    EXPECT_GE(m_clock.msecsSinceBoot() - start, 500);
    waitForWorker();
}

TEST_F(ExporterWrite, ANewTransferBeginsWithACleanErrorFlag) {
    m_exporter->outputErrorLog(QStringList(), 1);
    save(7, table(1));
    write(7, 1);
    EXPECT_EQ(readTag("VVT_ERROR0"), 0);
}

TEST_F(ExporterWrite, ItsTimerEndsTheDisplayOfAReadBeforeIt) {
    save(7, table(1));
    read(8, 1);
    write(7, 1);
    EXPECT_EQ(m_environment.delays(), QList<int>() << 2000 << 2000); // the read's and its own
    EXPECT_EQ(m_environment.pendingCalls(), 2);
    EXPECT_EQ(readTag("VVT_PROGRESS1"), 100);
    m_environment.pass(0);
    EXPECT_EQ(readTag("VVT_PROGRESS1"), 0);
}

TEST_F(ExporterWrite, ProgressFollowsTheQueueOncePerSecond) {
    save(7, table(32));
    std::vector<int> shown;
    m_port.setAnswer([&](const QByteArray& request) {
        if (requestCommand(request) == "WN") {
            m_clock.sleepMsecs(490); // with the 10 ms pause two batches a second
            shown.push_back(readTag("VVT_PROGRESS0"));
        }
        return m_controller.answer(request);
    });
    write(7, 32);
    ASSERT_EQ(int(shown.size()), (32 * 24 + 24) / 25);
    EXPECT_EQ(shown.front(), 0);
    EXPECT_GT(shown.back(), 85);
    EXPECT_LE(shown.back(), 100);
    for (std::size_t i = 1; i < shown.size(); ++i)
        EXPECT_LE(shown[i - 1], shown[i]);
    EXPECT_EQ(program(32), imageOf(32));
}

TEST_F(ExporterWrite, AQueueThatDoesNotMoveForSixPollsIsAFailure) {
    m_port.m_timeout = 9000;
    m_port.m_retries = 1;
    save(7, table(32));
    m_port.setAnswer([this](const QByteArray&) {
        m_clock.sleepMsecs(quint32(m_port.m_timeout)); // no lock is waited for by a writer
        return QByteArray();
    });
    write(7, 32);
    EXPECT_EQ(log(7), QLatin1String("Writing Data Fail,No Response in communication."));
    EXPECT_EQ(readTag("VVT_ERROR0"), 1);
    expectIdle();
}

TEST_F(ExporterWrite, AStartWhileItRunsIsIgnored) {
    save(7, table(32));
    int ignored_starts = 0;
    m_port.setAnswer([&](const QByteArray& request) {
        if (ignored_starts < 3) {
            const qint64 before = m_clock.msecsSinceBoot();
            m_exporter->writeDataToDMC50(); // would sleep 500 ms
            ignored_starts += m_clock.msecsSinceBoot() == before;
        }
        return m_controller.answer(request);
    });
    write(7, 32);
    EXPECT_EQ(ignored_starts, 3);
    EXPECT_EQ(m_port.requests().size(), (32 * 24 + 24) / 25);
}
