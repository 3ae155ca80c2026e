#include "runtime/drivers/dmc50v3/transfer/programfiles.h"
#include "tests/support/temporarydirectory.h"

#include <QDir>

#include <gtest/gtest.h>

namespace {

QStringList matchingNames(const TemporaryDirectory& directory, int program_id) {
    QStringList names;
    const QStringList paths = ProgramFiles::matchingProgramFiles(directory.path(), program_id);
    for (int i = 0; i < paths.size(); ++i) {
        EXPECT_TRUE(paths.at(i).startsWith(directory.path() + QLatin1Char('/')));
        names.append(QDir(directory.path()).relativeFilePath(paths.at(i)));
    }
    return names;
}

} // namespace

TEST(ProgramFiles, ProgramFileIsNamedByItsId) {
    EXPECT_EQ(ProgramFiles::programFile(QLatin1String("/usb"), 7),
              QLatin1String("/usb/PROG_7.txt"));
    EXPECT_EQ(ProgramFiles::programFile(QLatin1String("/usb"), -1),
              QLatin1String("/usb/PROG_-1.txt"));
}

TEST(ProgramFiles, TemplateReplacesEveryMinusOneOfThePath) {
    EXPECT_EQ(ProgramFiles::templateFile(QLatin1String("/usb/PROG_-1.txt")),
              QLatin1String("/usb/PROG_template.txt"));
    EXPECT_EQ(ProgramFiles::templateFile(QLatin1String("/run/media/stick-1/PROG_-1.txt")),
              QLatin1String("/run/media/sticktemplate/PROG_template.txt"));
}

TEST(ProgramFiles, MatchesAreSortedByName) {
    const TemporaryDirectory stick;
    stick.write(QLatin1String("PROG_7_old.txt"), "");
    stick.write(QLatin1String("PROG_7.txt"), "");
    stick.write(QLatin1String("PROG_7_a.txt"), "");
    EXPECT_EQ(matchingNames(stick, 7), QStringList() << QLatin1String("PROG_7.txt")
                                                     << QLatin1String("PROG_7_a.txt")
                                                     << QLatin1String("PROG_7_old.txt"));
}

TEST(ProgramFiles, AnotherIdThatEndsAlikeDoesNotMatch) {
    const TemporaryDirectory stick;
    stick.write(QLatin1String("PROG_17.txt"), "");
    stick.write(QLatin1String("PROG_77.txt"), "");
    stick.write(QLatin1String("READ_PROG_7_ERROR.txt"), "");
    EXPECT_EQ(matchingNames(stick, 7), QStringList());
}

TEST(ProgramFiles, DirectoriesDoNotMatch) {
    const TemporaryDirectory stick;
    ASSERT_TRUE(QDir(stick.path()).mkdir(QLatin1String("PROG_7.txt")));
    EXPECT_EQ(matchingNames(stick, 7), QStringList());
}

TEST(ProgramFiles, NothingMatchesInADirectoryThatHasGone) {
    EXPECT_EQ(ProgramFiles::matchingProgramFiles(QLatin1String("/nowhere"), 7), QStringList());
}

TEST(ProgramFiles, OnlyATransferToTheControllerNamesAWriteLog) {
    const QString usb = QLatin1String("/usb");
    EXPECT_EQ(ProgramFiles::errorLogFile(usb, TransferDirection::ToController, 3),
              QLatin1String("/usb/WRITE_PROG_3_ERROR.txt"));
    EXPECT_EQ(ProgramFiles::errorLogFile(usb, TransferDirection::FromController, 3),
              QLatin1String("/usb/READ_PROG_3_ERROR.txt"));
    EXPECT_EQ(ProgramFiles::errorLogFile(usb, TransferDirection::Neither, -1),
              QLatin1String("/usb/READ_PROG_-1_ERROR.txt"));
}
