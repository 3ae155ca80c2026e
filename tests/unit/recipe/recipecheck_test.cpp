#include "host/recipe/recipecheck.h"

#include "tests/support/goldenprograms.h"
#include "tests/support/machinememory.h"
#include "tests/unit/recipe/recipecontent.h"

#include <gtest/gtest.h>

using namespace host;

using namespace recipecontent;

namespace {

struct BadField {
    const char* name;
    const char* text;
    const char* reason;
};

class RefusedField : public ::testing::TestWithParam<BadField> {};

const BadField RefusedFields[] = {
    {"Empty", "", "empty"},
    {"Blank", " ", "empty"},
    {"Word", "abc", "not a number"},
    {"Hexadecimal", "0x10", "not a number"},
    {"Fraction", "1.5", "not a whole number"},
    {"DecimalComma", "1,5", "not a whole number"},
    {"Negative", "-5", "negative"},
    {"OneTooLarge", "4294967296", "too large, 4294967295 at most"},
    {"FarTooLarge", "99999999999999999999", "too large, 4294967295 at most"},
};

QStringList readRow(int line, const QByteArray& content) {
    return readRecipeText(content).lines.at(line).fields;
}

} // namespace

TEST(RecipeFormat, TitlesAndLabelsAreThoseOfThePanelsFile) {
    const QList<QStringList> golden = goldenRows(QStringLiteral("PROG_7.txt"));
    EXPECT_EQ(recipeTitles(), golden.at(0));
    EXPECT_EQ(recipeLabel(3), golden.at(3).at(0));
    EXPECT_EQ(recipeLabelNumber(golden.at(3).at(0)), 3);
}

TEST(RecipeFormat, OnlyItsOwnLabelsHaveNumbers) {
    for (const char* text : {"", "程序", "程序0", "程序01", "程序1a", "程式1", "1", "程序99999"})
        EXPECT_EQ(recipeLabelNumber(QString::fromUtf8(text)), 0) << text;
}

TEST(RecipeCheck, ThePanelsOwnFilesAreGood) {
    const RecipeCheck check = checkRecipe(goldenFile(QStringLiteral("PROG_template.txt")), 3);
    EXPECT_EQ(texts(check), "");
    EXPECT_TRUE(check.isGood());
    ASSERT_EQ(check.programs.size(), 3);
    EXPECT_TRUE(check.programs[2].isUnused());
}

TEST(RecipeCheck, ReadsTheValuesOfThePanelsFile) {
    const RecipeCheck check = checkRecipe(goldenFile(QStringLiteral("PROG_7.txt")));
    ASSERT_EQ(check.programs.size(), 3);
    const QList<QByteArray> images = goldenProgramImages();
    for (int i = 0; i < 3; ++i) {
        QList<quint32> values;
        for (quint32 value : check.programs[i].values)
            values.append(value);
        EXPECT_EQ(doubleWordImage(values), images[i]);
        EXPECT_EQ(check.programs[i].number, i + 1);
        EXPECT_EQ(check.programs[i].line, i + 2);
    }
}

TEST_P(RefusedField, IsListedWithItsPlaceForPeopleAndForTheDriver) {
    const RecipeCheck check = checkRecipe(fileWith(4, QString::fromUtf8(GetParam().text)));
    EXPECT_EQ(texts(check), std::string("f:3:5: refused: 設定時間(秒) [") + GetParam().text +
                                "]: " + GetParam().reason + " (the driver's row 1 and column 4)\n");
    EXPECT_FALSE(check.isGood());
    EXPECT_EQ(check.programs.size(), 1);
    EXPECT_EQ(check.lines, 2);
}

INSTANTIATE_TEST_SUITE_P(All, RefusedField, ::testing::ValuesIn(RefusedFields),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(RecipeCheck, ListsEveryBadFieldOfEveryLine) {
    const RecipeCheck check =
        checkRecipe(file({row(1, QStringLiteral("x")), row(2), row(3, QStringLiteral("y"))}));
    EXPECT_EQ(check.count(RecipeSeverity::Refused), 48);
    EXPECT_EQ(check.findings.last().line, 4);
    EXPECT_EQ(check.findings.last().row, 2);
    EXPECT_EQ(check.findings.last().column(), 24);
}

TEST(RecipeCheck, TellsWhatTheControllerWouldReceiveWhereTheThirdByteIsLost) {
    EXPECT_EQ(texts(checkRecipe(fileWith(1, QStringLiteral("70000")))),
              "f:3:2: warning: 設定溫度 [70000]: the controller would receive 4464: the driver "
              "writes bits 16 to 23 as 0 (the driver's row 1 and column 1)\n");
    EXPECT_TRUE(checkRecipe(fileWith(1, QStringLiteral("65535"))).isGood());
    EXPECT_FALSE(checkRecipe(fileWith(1, QStringLiteral("65536"))).isGood());
    EXPECT_TRUE(checkRecipe(fileWith(1, QStringLiteral("4278255615"))).isGood()); // FF00FFFF
}

TEST(RecipeCheck, TakesTheSpellingsOfNumbersThatTheDriverTakes) {
    for (const char* text : {"007", " 5", "5 ", "+5"})
        EXPECT_TRUE(checkRecipe(fileWith(1, QLatin1String(text))).isGood()) << text;
}

TEST(RecipeCheck, RefusesAShortLineOnce) {
    QStringList cut = row(2);
    cut.erase(cut.begin() + 10, cut.end());
    EXPECT_EQ(texts(checkRecipe(file({row(1), cut}))), "f:3: refused: only 10 of 25 fields\n");
}

TEST(RecipeCheck, WarnsOfALongLine) {
    EXPECT_EQ(texts(checkRecipe(file({row(1) << QStringLiteral("7")}))),
              "f:2: warning: 26 fields instead of 25: those behind would be lost, or a value too "
              "many has moved the others\n");
}

TEST(RecipeCheck, WarnsWhenLabelsAndPlacesDiffer) {
    EXPECT_EQ(texts(checkRecipe(file({row(1), row(3)}))),
              "f:3:1: warning: [程序3]: the driver would write this to program 2: it goes by the "
              "order of the lines\n");
    EXPECT_EQ(texts(checkRecipe(file({row(1), row(1)}))),
              "f:3:1: warning: [程序1]: the same label as in line 2\n");
    EXPECT_EQ(texts(checkRecipe(fileWith(0, QStringLiteral("soak")))),
              "f:3:1: warning: [soak]: this label should be [程序2]\n");
}

TEST(RecipeCheck, WarnsWhenTheTitlesAreMissing) {
    const QString text = lineOf(row(1)) + lineOf(row(2));
    const RecipeFindings findings = checkRecipe(encoded(text)).findings;
    ASSERT_EQ(findings.size(), 2); // and program 2, which would become program 1
    EXPECT_EQ(findingText(QStringLiteral("f"), findings[0]).toStdString(),
              "f:1: warning: no line of titles: the driver would skip 程序1 in its place and write "
              "every later program one slot too early");
}

TEST(RecipeCheck, WarnsOfTitlesThatAreChangedOrMoved) {
    QStringList titles = recipeTitles();
    titles[1] = QStringLiteral("temperature");
    std::swap(titles[2], titles[3]);
    EXPECT_EQ(texts(checkRecipe(encoded(lineOf(titles) + lineOf(row(1))))),
              "f:1:2: warning: 設定溫度 [temperature]: this title should be [設定溫度]\n"
              "f:1:3: warning: 設定時間(時) [設定時間(分)]: this title belongs to field 4: have "
              "columns been moved? The driver knows them by their place only\n"
              "f:1:4: warning: 設定時間(分) [設定時間(時)]: this title belongs to field 3: have "
              "columns been moved? The driver knows them by their place only\n");
    titles.clear();
    for (int i = 0; i < RecipeFields; ++i)
        titles.append(QString::number(i));
    EXPECT_EQ(texts(checkRecipe(encoded(lineOf(titles) + lineOf(row(1))))),
              "f:1: warning: not the titles of a program file; the driver does not look at them\n");
}

TEST(RecipeCheck, WarnsOfMoreProgramsThanAControllerHas) {
    QVector<QStringList> rows;
    for (int number = 1; number <= RecipePrograms; ++number)
        rows.append(row(number));
    EXPECT_TRUE(checkRecipe(file(rows)).isGood());
    rows.append(row(33, QStringLiteral("x")));
    const RecipeCheck check = checkRecipe(file(rows));
    EXPECT_EQ(texts(check), "f: warning: 33 programs, but a controller has 32: the driver would "
                            "never write the rest\n");
    EXPECT_EQ(check.programs.size(), RecipePrograms);
}

TEST(RecipeCheck, LooksAtAsManyProgramsAsAreAskedFor) {
    const QByteArray content = file({row(1), row(2, QStringLiteral("x"))});
    EXPECT_TRUE(checkRecipe(content, 1).isGood());
    EXPECT_FALSE(checkRecipe(content, 2).isGood());
    EXPECT_EQ(texts(checkRecipe(content, 3)).substr(0, 39),
              "f: warning: only 2 of 3 programs: the f");
}

TEST(RecipeCheck, NoCutIsEverTakenForTheWholeFile) {
    const QByteArray whole = goldenFile(QStringLiteral("PROG_template.txt"));
    ASSERT_TRUE(checkRecipe(whole, 3).isGood());
    for (int size = 0; size < whole.size(); ++size)
        EXPECT_FALSE(checkRecipe(whole.left(size), 3).isGood()) << size;
}

TEST(RecipeCheck, WithoutACountOnlyCutsBetweenProgramsPass) {
    const QByteArray whole = goldenFile(QStringLiteral("PROG_template.txt"));
    QVector<int> passed;
    for (int size = 0; size < whole.size(); ++size) {
        const RecipeCheck check = checkRecipe(whole.left(size));
        if (check.isGood()) {
            EXPECT_TRUE(whole.left(size).endsWith(QByteArray("\n\0", 2))) << size;
            passed.append(check.programs.size());
        }
    }
    EXPECT_EQ(passed, (QVector<int>{1, 2}));
}

TEST(RecipeCheck, AFilledUpEndOfAHalfWrittenFileIsFound) {
    const QByteArray whole = file({row(1), row(2)});
    EXPECT_FALSE(checkRecipe(whole + QByteArray(512, '\0')).isGood());
    EXPECT_FALSE(checkRecipe(whole.left(whole.size() - 40) + QByteArray(40, '\0')).isGood());
}

TEST(RecipeCheck, JudgesTheEncoding) {
    const QString text = lineOf(recipeTitles()) + lineOf(row(1));
    EXPECT_EQ(texts(checkRecipe(text.toUtf8())),
              "f: refused: no UTF-16LE text: save it as \"Unicode text\", not as UTF-8 or Big5\n");
    EXPECT_FALSE(checkRecipe(QTextCodec::codecForName("Big5")->fromUnicode(text)).isGood());

    const RecipeCheck marked = checkRecipe("\xEF\xBB\xBF" + text.toUtf8());
    EXPECT_EQ(texts(marked), "f: warning: encoded as UTF-8, where the panel writes UTF-16LE and "
                             "may read nothing else\n");
    EXPECT_EQ(marked.programs.size(), 1);

    const RecipeCheck unmarked = checkRecipe(encoded(text).mid(2));
    EXPECT_EQ(unmarked.count(RecipeSeverity::Note), 1);
    EXPECT_TRUE(unmarked.isGood()) << texts(unmarked);
}

TEST(RecipeCheck, RefusesWhatTheDriversLoaderCannotLoad) {
    EXPECT_EQ(texts(checkRecipe(file({}))),
              "f: refused: the driver cannot load it: No content found in the imported file.\n");
    EXPECT_EQ(texts(checkRecipe(fileWith(24, QStringLiteral("\"5")))),
              "f: refused: the driver cannot load it: Format error at line 4\n");
    const QString words = QStringLiteral("no program file at all\nreally\n");
    EXPECT_EQ(texts(checkRecipe(encoded(words))),
              "f: refused: the driver cannot load it: File format error. Cannot detect "
              "delimiter.\n");
}

TEST(RecipeCheck, RefusesATableThatTheDriverHasNoMemoryFor) {
    const MachineMemory machine(64 * 1024 * 1024);
    const QString text = QString(10000, QLatin1Char('\t')) + QStringLiteral("\n1").repeated(1000);
    const RecipeCheck check = checkRecipe(encoded(text + QLatin1Char('\n')));
    EXPECT_EQ(texts(check),
              "f: refused: the driver cannot load it: Not enough memory to fill up the rows short "
              "of header.\n");
}

TEST(RecipeCheck, ReadsCommasAsTheDriverDoesAndSaysSo) {
    QString text = lineOf(recipeTitles()) + lineOf(row(1));
    text.replace(QLatin1Char('\t'), QLatin1Char(','));
    const RecipeCheck check = checkRecipe(encoded(text));
    EXPECT_EQ(texts(check), "f: warning: separated by commas, where the panel writes tabs\n");
    EXPECT_EQ(check.programs.size(), 1);
}

TEST(RecipeText, CutsQuotedFieldsAndCountsEditorsLines) {
    QString text = lineOf(recipeTitles()) + QStringLiteral("\r\n");
    text += QStringLiteral("\"a\tb\"\t\"c\nd\"\t5\r\n");
    EXPECT_EQ(readRow(1, encoded(text)),
              (QStringList{QStringLiteral("a\tb"), QStringLiteral("c\nd"), QStringLiteral("5")}));
    EXPECT_EQ(readRecipeText(encoded(text)).lines[1].number, 4);
}

TEST(RecipeFinding, ShowsForeignTextsOnOneShortLine) {
    const QString text = findingText(QStringLiteral("f"),
                                     {RecipeSeverity::Refused, 2, 2, 0,
                                      QStringLiteral("\x1B[2J\n") + QString(50, QLatin1Char('x')),
                                      QStringLiteral("bad")});
    EXPECT_EQ(text.toStdString(), "f:2:2: refused: 設定溫度 [·[2J·" + std::string(35, 'x') +
                                      "…]: bad (the driver's row 0 and column 1)");
}
