// The exporter's files: found, chosen, and named; and its error logs.
#include "tests/support/dialogdriver.h"
#include "tests/unit/dmc50v3/transfer/transferfixture.h"

#include <QApplication>
#include <QThread>
#include <QWidget>

#include <functional>

namespace {

const char* const NoStickNotice = "DMC50|The system can't not detect the USB Stick.|1";

class ExporterFiles : public TransferFixture {
protected:
    QString fileToWrite(int program_id, bool& ok) {
        return m_exporter->getFileName(program_id, ok, 1);
    }
    QString onStick(const char* name) const { return m_stick.filePath(QLatin1String(name)); }

    static bool isDialogLeft() {
        const QWidgetList widgets = QApplication::allWidgets();
        for (const QWidget* widget : widgets) {
            if (widget->objectName() == QLatin1String("ambiguousFilesSelectDialog"))
                return true;
        }
        return false;
    }

    /** PROG_7.txt with one program and PROG_7_old.txt with two. */
    void saveTwoFiles() {
        saveTable(7, 2);
        m_stick.write(QLatin1String("PROG_7_old.txt"), m_stick.read(file(7)));
        saveTable(7, 1);
    }
};

} // namespace

TEST_F(ExporterFiles, AReadMakesTheFileOfItsId) {
    bool ok = false;
    EXPECT_EQ(m_exporter->getFileName(7, ok, 0), onStick("PROG_7.txt"));
    EXPECT_TRUE(ok);
    EXPECT_EQ(m_exporter->getFileName(-1, ok, 0), onStick("PROG_-1.txt"));
}

TEST_F(ExporterFiles, AnyModeButTheReadsLooksForAFileToLoad) {
    m_stick.write(QLatin1String("PROG_7_a.txt"), "");
    for (int mode : {1, 2, -1}) {
        bool ok = false;
        EXPECT_EQ(m_exporter->getFileName(7, ok, mode), onStick("PROG_7_a.txt")) << mode;
        EXPECT_TRUE(ok);
    }
}

TEST_F(ExporterFiles, AnyTypeButTheWritesIsTheLogOfReads) {
    bool ok = false;
    EXPECT_EQ(m_exporter->getErrorLogFileName(2, ok), onStick("READ_PROG_0_ERROR.txt"));
    EXPECT_EQ(m_exporter->getErrorLogFileName(-1, ok), onStick("READ_PROG_0_ERROR.txt"));
}

TEST_F(ExporterFiles, TheOnlyMatchIsTakenWithoutADialog) {
    m_stick.write(QLatin1String("PROG_7_a.txt"), "");
    bool ok = false;
    EXPECT_EQ(fileToWrite(7, ok), onStick("PROG_7_a.txt"));
    EXPECT_TRUE(ok);
}

TEST_F(ExporterFiles, NoMatchIsAnEmptyNameAndStillOk) {
    m_stick.write(QLatin1String("PROG_17.txt"), "");
    bool ok = false;
    EXPECT_EQ(fileToWrite(7, ok), QString());
    EXPECT_TRUE(ok);
    EXPECT_TRUE(m_notices.notices().isEmpty());
}

TEST_F(ExporterFiles, WithoutAStickThereIsANoticeAndNoName) {
    m_environment.pullStick();
    for (int mode = 0; mode <= 1; ++mode) {
        bool ok = true;
        EXPECT_EQ(m_exporter->getFileName(7, ok, mode), QString());
        EXPECT_FALSE(ok);
    }
    bool ok = true;
    EXPECT_EQ(m_exporter->getErrorLogFileName(1, ok), QString());
    EXPECT_FALSE(ok);
    EXPECT_EQ(m_exporter->getStorageMountPath(), QString());
    EXPECT_EQ(m_notices.notices(), QStringList() << QLatin1String(NoStickNotice)
                                                 << QLatin1String(NoStickNotice)
                                                 << QLatin1String(NoStickNotice));
}

TEST_F(ExporterFiles, LogsAreNamedByTheCurrentId) {
    m_exporter->setProgID(3);
    bool ok = false;
    EXPECT_EQ(m_exporter->getErrorLogFileName(0, ok), onStick("READ_PROG_3_ERROR.txt"));
    EXPECT_EQ(m_exporter->getErrorLogFileName(1, ok), onStick("WRITE_PROG_3_ERROR.txt"));
    EXPECT_TRUE(ok);
}

TEST_F(ExporterFiles, ASecondLogReplacesTheFirst) {
    m_exporter->setProgID(3);
    m_exporter->outputErrorLog(QStringList() << QLatin1String("one") << QLatin1String("two"), 0);
    EXPECT_EQ(m_stick.read(QLatin1String("READ_PROG_3_ERROR.txt")), QByteArray("one\ntwo"));
    m_exporter->outputErrorLog(QStringList() << QLatin1String("three"), 0);
    EXPECT_EQ(m_stick.read(QLatin1String("READ_PROG_3_ERROR.txt")), QByteArray("three"));
    EXPECT_EQ(m_environment.syncs(), 2);
}

TEST_F(ExporterFiles, EveryFileIsCompleteWhenTheStorageIsSynced) {
    QList<qint64> sizes;
    QString name;
    m_environment.m_on_sync = [&] { sizes.append(m_stick.read(name).size()); };
    name = QLatin1String("READ_PROG_0_ERROR.txt");
    m_exporter->outputErrorLog(QStringList(QLatin1String("lost")), 0);
    name = file(7);
    read(7, 1);
    m_environment.pass(2000);
    name = QLatin1String("PROG_template.txt");
    read(-1, 1);
    EXPECT_EQ(sizes, QList<qint64>()
                         << 4 << m_stick.read(file(7)).size() << m_stick.read(name).size());
    EXPECT_GT(sizes.last(), 0);
}

TEST_F(ExporterFiles, TheLogsTypeChoosesTheErrorFlag) {
    m_exporter->outputErrorLog(QStringList(), 2);
    EXPECT_FALSE(m_exporter->readingFromDMC50Error() || m_exporter->writingToDMC50Error());
    m_exporter->outputErrorLog(QStringList(), 0);
    EXPECT_TRUE(m_exporter->readingFromDMC50Error());
    EXPECT_FALSE(m_exporter->writingToDMC50Error());
    m_exporter->resetReadingFromDMC50Error();
    m_exporter->outputErrorLog(QStringList(), 1);
    EXPECT_FALSE(m_exporter->readingFromDMC50Error());
    EXPECT_TRUE(m_exporter->writingToDMC50Error());
}

TEST_F(ExporterFiles, WithoutAStickTheErrorFlagIsSetAndTheOperatorTold) {
    m_environment.pullStick();
    m_exporter->outputErrorLog(QStringList(QLatin1String("lost")), 1);
    EXPECT_TRUE(m_exporter->writingToDMC50Error());
    EXPECT_EQ(m_notices.notices(), QStringList(QLatin1String(NoStickNotice)));
}

TEST_F(ExporterFiles, ALogThatCannotBeOpenedStillSetsTheFlag) {
    m_environment.mountStick(QLatin1String("/nowhere"));
    m_exporter->outputErrorLog(QStringList(QLatin1String("lost")), 0);
    EXPECT_TRUE(m_exporter->readingFromDMC50Error());
    EXPECT_EQ(m_environment.syncs(), 0);
}

TEST_F(ExporterFiles, OfSeveralMatchesTheOperatorChooses) {
    saveTwoFiles();
    DialogDriver operator_at_panel(DialogDriver::PressOk, 1);
    write(7, 2);
    EXPECT_EQ(operator_at_panel.dialogsSeen(), 1);
    EXPECT_EQ(operator_at_panel.offered(),
              QStringList() << onStick("PROG_7.txt") << onStick("PROG_7_old.txt"));
    EXPECT_EQ(program(2), imageOf(2)); // which only the chosen file has
    EXPECT_EQ(readTag("VVT_ERROR0"), 0);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(isDialogLeft());
}

TEST_F(ExporterFiles, AChoiceClosedWithoutTheButtonWritesTheFirstFile) {
    saveTwoFiles();
    DialogDriver operator_at_panel(DialogDriver::CloseWindow);
    write(7, 2);
    EXPECT_EQ(operator_at_panel.dialogsSeen(), 1);
    EXPECT_EQ(program(1), imageOf(1));
    EXPECT_EQ(program(2), imageOf(0));
    EXPECT_EQ(readTag("VVT_ERROR0"), 0);
}
