// What the check says of a program file is what the driver makes of it.
#include "host/recipe/recipecheck.h"
#include "runtime/drivers/dmc50v3/transfer/programtable.h"
#include "runtime/panel/kcsvloader.h"
#include "tests/support/goldenprograms.h"
#include "tests/unit/recipe/recipecontent.h"

#include <QBuffer>
#include <QTextStream>

#include <gtest/gtest.h>

#include <random>

using namespace host;

using namespace recipecontent;

namespace {

const QStringList Fields = {
    QStringLiteral("0"),           QStringLiteral("850"),         QStringLiteral("65535"),
    QStringLiteral("65536"),       QStringLiteral("4294967295"),  QStringLiteral("4294967296"),
    QStringLiteral("-1"),          QStringLiteral("+7"),          QStringLiteral(" 7 "),
    QStringLiteral("1.5"),         QStringLiteral("1,5"),         QStringLiteral("1e3"),
    QStringLiteral("0x10"),        QStringLiteral("abc"),         QStringLiteral(""),
    QStringLiteral("\"850\""),     QStringLiteral("８５０"),      QStringLiteral("1 000"),
    QStringLiteral("\"8\"\"50\""), QStringLiteral("00000000001"),
};

/** The rows as the driver's transfer takes them from its loader. */
class DriversRows : public KCSVLoader {
public:
    explicit DriversRows(const QByteArray& content) : KCSVLoader(nullptr) {
        QBuffer buffer;
        buffer.setData(content);
        buffer.open(QIODevice::ReadOnly | QIODevice::Text);
        QTextStream stream(&buffer);
        stream.setCodec("UTF-16LE");
        QStringList errors, warnings;
        loadFile(stream, errors, warnings);
        EXPECT_EQ(errors, QStringList());
        m_content.removeFirst();
    }
    const QList<QStringList>& rows() const { return m_content; }
};

/** The refused fields in the words of the driver's log. */
QStringList logOf(const RecipeCheck& check) {
    QStringList lines;
    for (const RecipeFinding& finding : check.findings) {
        if (finding.severity == RecipeSeverity::Refused)
            lines.append(QStringLiteral("The value [%1] at row %2 and column %3 is invalid, "
                                        "please check it.\n")
                             .arg(finding.text)
                             .arg(finding.row)
                             .arg(finding.column()));
    }
    return lines;
}

QByteArray imageOf(const RecipeProgram& program) {
    QList<quint32> values;
    for (quint32 value : program.values)
        values.append(value);
    return doubleWordImage(values);
}

bool hasWarningInRow(const RecipeCheck& check, int row) {
    return std::any_of(check.findings.begin(), check.findings.end(),
                       [row](const RecipeFinding& finding) { return finding.row == row; });
}

} // namespace

TEST(DriverAgreement, RefusesTheSameFieldsAtTheSamePlaces) {
    std::mt19937 random(1);
    int refused = 0;
    for (int round = 0; round < 200; ++round) {
        QVector<QStringList> rows;
        for (int number = 1; number <= 3; ++number) {
            rows.append(row(number));
            rows.last()[1 + int(random() % RecipeColumns)] =
                Fields[int(random() % std::uint32_t(Fields.size()))];
        }
        const QByteArray content = file(rows);
        const RecipeCheck check = checkRecipe(content);
        const QStringList log = ProgramTable::encodeRows(DriversRows(content).rows(), 32).errors;
        EXPECT_EQ(logOf(check), log);
        refused += log.size();
    }
    EXPECT_GT(refused, 100);
}

TEST(DriverAgreement, WarnsExactlyWhereTheDriverWouldWriteAnotherValue) {
    std::mt19937 random(2);
    for (int round = 0; round < 200; ++round) {
        QStringList changed = row(1);
        for (int column = 1; column <= RecipeColumns; ++column)
            changed[column] = QString::number(quint32(random()) >> random() % 32);
        const QByteArray content = file({changed});
        const RecipeCheck check = checkRecipe(content);
        const QList<QByteArray> images =
            ProgramTable::encodeRows(DriversRows(content).rows(), 32).images;
        ASSERT_EQ(check.programs.size(), images.size());
        EXPECT_EQ(hasWarningInRow(check, 0), imageOf(check.programs[0]) != images[0]);
    }
}

TEST(DriverAgreement, CountsTheSameProgramsAndValues) {
    EXPECT_EQ(int(ProgramTable::ProgramDoubleWords), RecipeColumns);
    EXPECT_EQ(int(ProgramTable::RowFields), RecipeFields);
    EXPECT_EQ(int(ProgramTable::MaxPrograms), RecipePrograms);
}
