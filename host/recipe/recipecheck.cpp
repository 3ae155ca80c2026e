#include "host/recipe/recipecheck.h"

#include <QMap>
#include <QRegularExpression>

#include <algorithm>

namespace host {

namespace {

constexpr quint32 LostBits = 0x00FF0000; // that the driver writes as 0

bool matches(const QString& text, const char* pattern) {
    return QRegularExpression(QLatin1String(pattern)).match(text).hasMatch();
}

/** Why the driver would not take @p text for a value. */
QString refusalOf(const QString& text) {
    const QString number = text.trimmed();
    if (number.isEmpty())
        return QStringLiteral("empty");
    if (matches(number, "^\\+?[0-9]+$"))
        return QStringLiteral("too large, 4294967295 at most");
    if (matches(number, "^-[0-9]+$"))
        return QStringLiteral("negative");
    if (matches(number, "^[+-]?[0-9]+[.,][0-9]*$"))
        return QStringLiteral("not a whole number");
    return QStringLiteral("not a number");
}

class Checker {
public:
    explicit Checker(RecipeCheck& check) : m_check(check) {}

    /** The titles' line. */
    void checkHeader(const RecipeLine& line);

    /** The line of program @p row + 1. */
    void checkProgram(const RecipeLine& line, int row);

private:
    RecipeFinding& add(RecipeSeverity severity, const RecipeLine& line, int row,
                       const QString& reason);
    void addField(RecipeSeverity severity, const RecipeLine& line, int row, int column,
                  const QString& reason);
    void checkTitle(const RecipeLine& line, int column);
    void checkFieldCount(const RecipeLine& line, int row);
    void checkLabel(const RecipeLine& line, int row);
    bool checkValue(const RecipeLine& line, int row, int column, quint32& value);

    RecipeCheck& m_check;
    QMap<int, int> m_lines_of_labels; // program number -> the first line that names it
};

RecipeFinding& Checker::add(RecipeSeverity severity, const RecipeLine& line, int row,
                            const QString& reason) {
    RecipeFinding finding;
    finding.severity = severity;
    finding.line = line.number;
    finding.row = row;
    finding.reason = reason;
    m_check.findings.append(finding);
    return m_check.findings.last();
}

void Checker::addField(RecipeSeverity severity, const RecipeLine& line, int row, int column,
                       const QString& reason) {
    RecipeFinding& finding = add(severity, line, row, reason);
    finding.field = column + 1;
    finding.text = line.fields.value(column);
}

void Checker::checkHeader(const RecipeLine& line) {
    const QStringList& titles = recipeTitles();
    if (line.fields == titles)
        return;
    const int known =
        int(std::count_if(line.fields.begin(), line.fields.end(),
                          [&](const QString& text) { return titles.contains(text); }));
    if (recipeLabelNumber(line.fields.first()) > 0) {
        add(RecipeSeverity::Warning, line, -1,
            QStringLiteral("no line of titles: the driver would skip %1 in its place and write "
                           "every later program one slot too early")
                .arg(line.fields.first()));
    } else if (known <= 1) {
        add(RecipeSeverity::Warning, line, -1,
            QStringLiteral("not the titles of a program file; the driver does not look at them"));
    } else {
        checkFieldCount(line, -1);
        for (int column = 0; column < std::min(line.fields.size(), RecipeFields); ++column)
            checkTitle(line, column);
    }
}

void Checker::checkTitle(const RecipeLine& line, int column) {
    const QString title = recipeTitles().at(column);
    if (line.fields.at(column) == title)
        return;
    const int home = recipeTitles().indexOf(line.fields.at(column));
    const QString reason =
        home < 0 ? QStringLiteral("this title should be [%1]").arg(title)
                 : QStringLiteral("this title belongs to field %1: have columns been moved? The "
                                  "driver knows them by their place only")
                       .arg(home + 1);
    addField(RecipeSeverity::Warning, line, -1, column, reason);
}

void Checker::checkFieldCount(const RecipeLine& line, int row) {
    const int fields = line.fields.size();
    if (fields > RecipeFields)
        add(RecipeSeverity::Warning, line, row,
            QStringLiteral("%1 fields instead of %2: those behind would be lost, or a value too "
                           "many has moved the others")
                .arg(fields)
                .arg(RecipeFields));
    else if (fields < RecipeFields)
        add(row < 0 ? RecipeSeverity::Warning : RecipeSeverity::Refused, line, row,
            QStringLiteral("only %1 of %2 fields").arg(fields).arg(RecipeFields));
}

/** The driver goes by the order of the lines; an operator goes by the labels. */
void Checker::checkLabel(const RecipeLine& line, int row) {
    const int number = recipeLabelNumber(line.fields.first());
    if (number == 0) {
        addField(RecipeSeverity::Warning, line, row, RecipeLabel,
                 QStringLiteral("this label should be [%1]").arg(recipeLabel(row + 1)));
        return;
    }
    if (m_lines_of_labels.contains(number))
        addField(RecipeSeverity::Warning, line, row, RecipeLabel,
                 QStringLiteral("the same label as in line %1").arg(m_lines_of_labels[number]));
    else if (number != row + 1)
        addField(RecipeSeverity::Warning, line, row, RecipeLabel,
                 QStringLiteral("the driver would write this to program %1: it goes by the order "
                                "of the lines")
                     .arg(row + 1));
    if (!m_lines_of_labels.contains(number))
        m_lines_of_labels[number] = line.number;
}

bool Checker::checkValue(const RecipeLine& line, int row, int column, quint32& value) {
    const QString& text = line.fields.at(column);
    bool is_number = false;
    value = text.toUInt(&is_number, 10); // as the driver reads it
    if (!is_number)
        addField(RecipeSeverity::Refused, line, row, column, refusalOf(text));
    else if (value & LostBits)
        addField(RecipeSeverity::Warning, line, row, column,
                 QStringLiteral("the controller would receive %1: the driver writes bits 16 to 23 "
                                "as 0")
                     .arg(value & ~LostBits));
    return is_number;
}

void Checker::checkProgram(const RecipeLine& line, int row) {
    checkLabel(line, row);
    checkFieldCount(line, row);
    RecipeProgram program;
    program.line = line.number;
    program.number = recipeLabelNumber(line.fields.first());
    bool is_complete = line.fields.size() >= RecipeFields;
    for (int column = 1; column < std::min(line.fields.size(), RecipeFields); ++column) {
        if (!checkValue(line, row, column, program.values[std::size_t(column) - 1]))
            is_complete = false;
    }
    if (is_complete)
        m_check.programs.append(program);
}

void addFileFinding(RecipeCheck& check, const QString& reason) {
    RecipeFinding finding;
    finding.severity = RecipeSeverity::Warning;
    finding.reason = reason;
    check.findings.append(finding);
}

void judgeCount(RecipeCheck& check, std::optional<int> count) {
    if (check.lines > RecipePrograms)
        addFileFinding(check, QStringLiteral("%1 programs, but a controller has %2: the driver "
                                             "would never write the rest")
                                  .arg(check.lines)
                                  .arg(RecipePrograms));
    if (count && check.lines < *count)
        addFileFinding(check, QStringLiteral("only %1 of %2 programs: the file may have been cut")
                                  .arg(check.lines)
                                  .arg(*count));
}

} // namespace

int RecipeCheck::count(RecipeSeverity severity) const {
    return int(std::count_if(findings.begin(), findings.end(), [&](const RecipeFinding& finding) {
        return finding.severity == severity;
    }));
}

bool RecipeCheck::isGood() const {
    return count(RecipeSeverity::Refused) == 0 && count(RecipeSeverity::Warning) == 0;
}

RecipeCheck checkRecipe(const QByteArray& content, std::optional<int> count) {
    const RecipeText text = readRecipeText(content);
    RecipeCheck check;
    check.findings = text.findings;
    check.lines = std::max(0, text.lines.size() - 1);
    judgeCount(check, count);
    if (text.lines.isEmpty())
        return check;
    Checker checker(check);
    checker.checkHeader(text.lines.first());
    const int looked_at = std::min({check.lines, RecipePrograms, count.value_or(RecipePrograms)});
    for (int row = 0; row < looked_at; ++row)
        checker.checkProgram(text.lines.at(row + 1), row);
    return check;
}

} // namespace host
