#include "host/transfer/recipejob.h"

#include "host/transfer/paneloperator.h"
#include "tests/support/temporarydirectory.h"
#include "tests/unit/transfer/transferlink.h"

#include <QTextCodec>

#include <gtest/gtest.h>

using namespace host;

namespace {

constexpr int Programs = 3;

QString text(const char* utf8) {
    return QString::fromUtf8(utf8);
}

class RecipeJobTest : public ::testing::Test {
protected:
    RecipeJobTest() {
        Project project;
        project.links.resize(1);
        project.links[0].id = 1;
        NodeDefinition node;
        node.station = node.link_id = 1;
        node.is_default = true;
        project.nodes.append(node);
        for (const QString& item : recipeSlotItems().mid(0, Programs)) {
            TagDefinition tag;
            tag.address = *parseProjectAddress(item.section(QLatin1Char(':'), 0, 0));
            tag.type = *tagTypeByName(QStringLiteral("dword"));
            tag.count = RecipeColumns;
            tag.link_id = tag.station = 1;
            project.tags.append(tag);
        }
        m_order.slots_known = recipeSlots(project, 1, Programs);
        m_order.program_id = 7;
        m_order.count = Programs;
        m_order.stick = m_stick.path();
        for (auto& script : driver.script)
            script = {{true, 0}, {true, 100}};
    }

    /** A file with rows of these labels; all values are @p value. */
    void writeFile(const char* name, const QStringList& labels, const QString& value) {
        QString content = QString(RecipeColumns, QLatin1Char('\t')) + QLatin1Char('\n');
        for (const QString& label : labels) {
            content += label;
            for (int i = 0; i < RecipeColumns; ++i)
                content += QLatin1Char('\t') + value;
            content += QLatin1Char('\n');
        }
        QTextEncoder encoder(QTextCodec::codecForName("UTF-16LE"), QTextCodec::DefaultConversion);
        m_stick.write(QLatin1String(name), encoder.fromUnicode(content));
    }

    /** All values of all programs in the controller. */
    void hold(quint32 value) {
        QByteArray image(4 * RecipeColumns, '\0');
        for (int i = 0; i < RecipeColumns; ++i)
            qToLittleEndian<quint32>(value, image.data() + 4 * i);
        for (const TagDefinition& tag : m_order.slots_known.tags)
            driver.values[tag.address.text] = image;
    }

    RecipeReport run(RecipeReport (RecipeJob::*what)()) {
        RecipeJob job(
            *link.session, m_panel, m_order, [](const char*, int) {}, link.clock);
        return (job.*what)();
    }

    const QStringList Labels = {text("程序1"), text("程序2"), text("程序3")};
    TransferLink link;
    TransferDriver& driver = link.driver;
    TemporaryDirectory m_stick;
    PanelOperator m_panel;
    RecipeOrder m_order;
};

} // namespace

TEST_F(RecipeJobTest, PullsAFile) {
    driver.on_start = [&](TransferDriver::Kind) { writeFile("PROG_7.txt", Labels, text("5")); };
    const RecipeReport report = run(&RecipeJob::pull);
    EXPECT_EQ(report.problems, QStringList());
    EXPECT_EQ(report.programs, QVector<int>({1, 2, 3}));
    EXPECT_EQ(report.file, m_stick.filePath(text("PROG_7.txt")));
}

TEST_F(RecipeJobTest, NamesProgramsThatThePulledFileLacks) {
    driver.on_start = [&](TransferDriver::Kind) {
        writeFile("PROG_7.txt", {Labels[1]}, text("5"));
    };
    m_order.slots_known.unknown = {4, 5};
    m_order.count = 5;
    EXPECT_EQ(run(&RecipeJob::pull).problems,
              QStringList({text("program 1, 3: not in the file; the controller did not answer"),
                           text("program 4, 5: not in the file; the project has no tag for it")}));
}

TEST_F(RecipeJobTest, DoesNotTakeAnOldFileForAPulledOne) {
    writeFile("PROG_7.txt", Labels, text("5"));
    driver.script[TransferDriver::Pull] = {{true, 0}, {false, 0}};
    EXPECT_EQ(run(&RecipeJob::pull).problems, QStringList(text("PROG_7.txt has not been written")));
    driver.on_start = [&](TransferDriver::Kind) { writeFile("PROG_7.txt", Labels, text("56")); };
    EXPECT_TRUE(run(&RecipeJob::pull).ok()) << "its end fell between two looks";
}

TEST_F(RecipeJobTest, SaysThatTheStickHasBeenTakenOut) {
    driver.on_start = [&](TransferDriver::Kind) { m_stick.remove(); };
    EXPECT_EQ(run(&RecipeJob::pull).problems, QStringList(text("the stick has been taken out")));
}

TEST_F(RecipeJobTest, PrintsANewErrorLogButNoOldOne) {
    m_stick.write(text("READ_PROG_7_ERROR.txt"), "old");
    driver.script[TransferDriver::Pull] = {{true, 0, true}};
    EXPECT_EQ(run(&RecipeJob::pull).problems,
              QStringList(text("the driver has given up, and could write no error log")));
    driver.on_start = [&](TransferDriver::Kind) {
        m_stick.write(text("READ_PROG_7_ERROR.txt"), "Timeout\nof it");
    };
    driver.now[TransferDriver::Pull] = {};
    EXPECT_EQ(run(&RecipeJob::pull).problems,
              QStringList({text("the driver has given up; its READ_PROG_7_ERROR.txt says:"),
                           text("Timeout"), text("of it")}));
}

TEST_F(RecipeJobTest, ReadsBackWhatItHasPushed) {
    writeFile("PROG_7.txt", Labels, text("5"));
    hold(5);
    const RecipeReport report = run(&RecipeJob::push);
    EXPECT_EQ(report.problems, QStringList());
    EXPECT_EQ(report.programs, QVector<int>({1, 2, 3}));
}

TEST_F(RecipeJobTest, NeverCallsAWrongValueRight) {
    writeFile("PROG_7.txt", Labels, text("5"));
    hold(6);
    const RecipeReport report = run(&RecipeJob::push);
    EXPECT_EQ(report.programs, QVector<int>());
    ASSERT_EQ(report.problems.size(), 11) << "ten, and how many more";
    EXPECT_EQ(report.problems[0],
              text("program 1, value 1: the file says 5, the controller holds 6"));
    EXPECT_EQ(report.problems[10], text("and 62 more"));
}

TEST_F(RecipeJobTest, ExplainsValuesThatLoseTheirThirdByte) {
    writeFile("PROG_7.txt", {Labels[0]}, text("70000"));
    hold(4464);
    EXPECT_EQ(run(&RecipeJob::push).problems.first(),
              text("program 1, value 1: the file says 70000, the controller holds 4464; the driver "
                   "sets bits 16 to 23 to 0"));
}

TEST_F(RecipeJobTest, SaysWhenItCannotReadBack) {
    writeFile("PROG_7.txt", Labels, text("5"));
    driver.silent_stations = {1};
    EXPECT_EQ(run(&RecipeJob::push).problems,
              QStringList(text("program 1 and those behind it cannot be read back: no value from "
                               "station 1")));
}

TEST_F(RecipeJobTest, TakesNothingForRightThatItCannotCompare) {
    m_stick.write(text("PROG_7.txt"), "no program file");
    EXPECT_EQ(run(&RecipeJob::push).problems,
              QStringList(text("the file cannot be compared with what the controller holds")));
}

TEST_F(RecipeJobTest, RefusesRowsThatAreLabelledForOtherPrograms) {
    writeFile("PROG_7.txt", {Labels[0], Labels[2]}, text("5"));
    hold(5);
    EXPECT_EQ(run(&RecipeJob::push).problems,
              QStringList({text("row 2 is labelled for program 3, but would be written to "
                                "program 2"),
                           text("nothing has been written; --ignore-labels writes it all the "
                                "same")}));
    EXPECT_EQ(driver.written, QStringList());
    m_order.ignore_labels = true;
    EXPECT_TRUE(run(&RecipeJob::push).ok());
}

TEST_F(RecipeJobTest, WantsOneFileToPush) {
    EXPECT_TRUE(run(&RecipeJob::push)
                    .problems.first()
                    .startsWith(text("there is neither PROG_7.txt nor PROG_7_*.txt in ")));
    writeFile("PROG_7.txt", Labels, text("5"));
    writeFile("PROG_7_b.txt", Labels, text("6"));
    hold(6);
    EXPECT_EQ(run(&RecipeJob::push).problems,
              QStringList(text("several files match; choose one with --file: PROG_7.txt, "
                               "PROG_7_b.txt")));
    m_order.file = text("PROG_8.txt");
    EXPECT_EQ(run(&RecipeJob::push).problems,
              QStringList(text("PROG_8.txt is none of the files that match: PROG_7.txt, "
                               "PROG_7_b.txt")));
    m_order.file = text("PROG_7_b.txt");
    EXPECT_TRUE(run(&RecipeJob::push).ok());
}

TEST_F(RecipeJobTest, WarnsOfAPartOnlyWhereSomethingCanHaveBeenWritten) {
    driver.script[TransferDriver::Push] = {{true, 0, true}};
    writeFile("PROG_7.txt", Labels, text("5"));
    EXPECT_EQ(run(&RecipeJob::push).problems.last(),
              text("the controller may hold a part of the programs; push them again"));
    driver.now[TransferDriver::Push] = {};
    writeFile("PROG_7.txt", Labels, text("x"));
    EXPECT_EQ(run(&RecipeJob::push).problems,
              QStringList(text("the driver has given up, and could write no error log")));
}

TEST_F(RecipeJobTest, MakesABlankFile) {
    driver.on_start = [&](TransferDriver::Kind) {
        writeFile("PROG_template.txt", Labels, text("0"));
    };
    EXPECT_EQ(run(&RecipeJob::makeTemplate).programs, QVector<int>({1, 2, 3}));
}
