#include "host/transfer/recipefiles.h"

#include "tests/support/temporarydirectory.h"

#include <gtest/gtest.h>

using namespace host;

TEST(RecipeFilesTest, NamesTheFilesAsTheDriverDoes) {
    const RecipeFiles files(QStringLiteral("/stick"), 7);
    EXPECT_EQ(files.pulled(), QStringLiteral("/stick/PROG_7.txt"));
    EXPECT_EQ(files.templateFile(), QStringLiteral("/stick/PROG_template.txt"));
    EXPECT_EQ(files.errorLog(false), QStringLiteral("/stick/READ_PROG_7_ERROR.txt"));
    EXPECT_EQ(files.errorLog(true), QStringLiteral("/stick/WRITE_PROG_7_ERROR.txt"));
}

TEST(RecipeFilesTest, FindsTheFilesThatAPushMayTake) {
    const TemporaryDirectory stick;
    for (const char* name : {"PROG_7_b.txt", "PROG_7.txt", "PROG_17.txt", "PROG_7b.txt"})
        stick.write(QLatin1String(name), "x");
    EXPECT_EQ(RecipeFiles(stick.path(), 7).pushable(),
              QStringList({QStringLiteral("PROG_7.txt"), QStringLiteral("PROG_7_b.txt")}));
}

TEST(RecipeFilesTest, SeesWhetherAFileHasBeenWritten) {
    const TemporaryDirectory stick;
    const QString path = stick.filePath(QStringLiteral("file"));
    const FileMark missing(path);
    EXPECT_FALSE(missing.hasChanged());
    stick.write(QStringLiteral("file"), "old");
    EXPECT_TRUE(missing.hasChanged());
    const FileMark old(path);
    EXPECT_FALSE(old.hasChanged());
    stick.write(QStringLiteral("file"), "newer");
    EXPECT_TRUE(old.hasChanged());
}

TEST(RecipeFilesTest, SeesThatAFolderHasGone) {
    const TemporaryDirectory stick;
    const FolderMark mark(stick.path());
    stick.write(QStringLiteral("file"), "x");
    EXPECT_TRUE(mark.holds());
    stick.remove();
    EXPECT_FALSE(mark.holds());
    EXPECT_FALSE(FolderMark(QStringLiteral("/nowhere")).holds());
}

TEST(RecipeFilesTest, ReadsALogWithoutItsEmptyLines) {
    const TemporaryDirectory stick;
    stick.write(QStringLiteral("log"), "one\n\ntwo\n");
    EXPECT_EQ(logLines(stick.filePath(QStringLiteral("log"))),
              QStringList({QStringLiteral("one"), QStringLiteral("two")}));
    EXPECT_EQ(logLines(stick.filePath(QStringLiteral("none"))), QStringList());
}
