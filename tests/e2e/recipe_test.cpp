// Programs between the simulated controller and files on a stick, by dmc50ctl.
#include "tests/e2e/programs.h"

#include <QDir>
#include <QFile>
#include <QTextCodec>

#include <gtest/gtest.h>

namespace {

const QStringList PACED = {"--baud", "38400", "--turnaround", "5"};

/** A folder that serves as a stick, and what lies there. */
class Stick {
public:
    QString path() const { return m_directory.path(); }
    QString file(const QString& name) const { return m_directory.filePath(name); }
    QStringList names() const { return QDir(path()).entryList(QDir::Files, QDir::Name); }

    /** The rows of a program file, the titles first. */
    QList<QStringList> table(const QString& name) const {
        QFile program_file(file(name));
        EXPECT_TRUE(program_file.open(QIODevice::ReadOnly)) << qPrintable(name);
        QList<QStringList> rows;
        const QString text = QTextCodec::codecForName("UTF-16")->toUnicode(program_file.readAll());
        for (const QString& line : text.split('\n', Qt::SkipEmptyParts))
            rows.append(line.split('\t'));
        return rows;
    }

private:
    QTemporaryDir m_directory;
};

QStringList onStick(const QString& port, const Stick& stick, const QStringList& command) {
    return QStringList{"--port", port, "recipe"} + command + QStringList{"--stick", stick.path()};
}

quint32 slotAddress(int number) {
    return 0x1000 + 0x20 * quint32(number - 1);
}

} // namespace

TEST(Recipe, PullsAllProgramsOfAControllerOnAPacedLine) {
    SimulatedLine line(PACED);
    Stick stick;
    const Ended ended = control(onStick(line.port(), stick, {"pull", "7"}));
    EXPECT_EQ(ended.status, 0) << qPrintable(ended.errors);
    EXPECT_TRUE(ended.output.contains("32 programs pulled to " + stick.file("PROG_7.txt")));
    EXPECT_EQ(stick.names(), QStringList("PROG_7.txt"));
    const QList<QStringList> rows = stick.table("PROG_7.txt");
    ASSERT_EQ(rows.size(), 33);
    for (int number = 1; number <= 32; ++number) {
        ASSERT_EQ(rows[number].size(), 25);
        for (int i = 0; i < 24; ++i)
            EXPECT_EQ(rows[number][i + 1].toUInt(),
                      line.memory(1, slotAddress(number) + quint32(i)));
    }
}
