#include "host/recipe/recipefinding.h"

#include "host/recipe/recipeformat.h"

#include <algorithm>

namespace host {

namespace {

constexpr int LongestQuotation = 40; // characters

QChar visible(QChar character) {
    return character.isPrint() ? character : QChar(0xB7); // a middle dot
}

/** The field's text on one line, without control characters. */
QString quotation(const QString& text) {
    QString shown = text.left(LongestQuotation);
    std::transform(shown.begin(), shown.end(), shown.begin(), visible);
    if (text.size() > LongestQuotation)
        shown += QChar(0x2026); // an ellipsis
    return QLatin1Char('[') + shown + QLatin1Char(']');
}

QString placeText(const RecipeFinding& finding) {
    QString place;
    if (finding.line > 0)
        place += QStringLiteral("%1:").arg(finding.line);
    if (finding.field > 0)
        place += QStringLiteral("%1:").arg(finding.field);
    return place;
}

/** The field's title, where it has one, and its text. */
QString subjectText(const RecipeFinding& finding) {
    if (finding.field == 0)
        return QString();
    const QString title = recipeTitles().value(finding.column()).trimmed();
    return (title.isEmpty() ? QString() : title + QLatin1Char(' ')) + quotation(finding.text) +
           QStringLiteral(": ");
}

QString driverPlaceText(const RecipeFinding& finding) {
    if (finding.row < 0 || finding.column() < 1)
        return QString();
    return QStringLiteral(" (the driver's row %1 and column %2)")
        .arg(finding.row)
        .arg(finding.column());
}

} // namespace

QString severityName(RecipeSeverity severity) {
    switch (severity) {
    case RecipeSeverity::Refused:
        return QStringLiteral("refused");
    case RecipeSeverity::Warning:
        return QStringLiteral("warning");
    default:
        return QStringLiteral("note");
    }
}

QString findingText(const QString& file, const RecipeFinding& finding) {
    return file + QLatin1Char(':') + placeText(finding) + QLatin1Char(' ') +
           severityName(finding.severity) + QStringLiteral(": ") + subjectText(finding) +
           finding.reason + driverPlaceText(finding);
}

} // namespace host
