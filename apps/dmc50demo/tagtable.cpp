#include "apps/dmc50demo/tagtable.h"

#include "host/session/tagvalue.h"

#include <algorithm>

using namespace host;

namespace {

// Leaves room for the longest reason of an error in 80 columns.
constexpr int NameWidth = 18;
constexpr int AddressWidth = 12;
constexpr int StationWidth = 3;
constexpr int ValueWidth = 10;
constexpr int AgeWidth = 6;
constexpr int Gap = 2;

QString padded(const QString& text, int width) {
    return text.leftJustified(width, QLatin1Char(' '), true) + QString(Gap, QLatin1Char(' '));
}

QString ageText(qint64 msecs) {
    return msecs < 0 ? QStringLiteral("never")
                     : QString::fromLatin1("%1 s").arg(double(msecs) / 1000, 0, 'f', 1);
}

/** "read station id#2 start address 00101000:DMC50 no response" is too long for a
 *  table that shows the station anyway. */
QString reason(const QString& error) {
    return error.section(QLatin1Char(':'), -1);
}

QString coloured(const char* colour, const QString& text, const Palette& palette) {
    return QLatin1String(colour) + text + QLatin1String(palette.plain);
}

QString head(const Palette& palette) {
    return coloured(palette.bold,
                    padded(QStringLiteral("NAME"), NameWidth) +
                        padded(QStringLiteral("ADDRESS"), AddressWidth) +
                        padded(QStringLiteral("STN"), StationWidth) +
                        padded(QStringLiteral("VALUE"), ValueWidth) +
                        padded(QStringLiteral("AGE"), AgeWidth) + QStringLiteral("ERROR"),
                    palette);
}

QString line(const TagRow& row, int width, const Palette& palette) {
    const QString value = row.value.isEmpty() ? QStringLiteral("-") : row.value;
    const char* const value_colour = !row.error.isEmpty() ? palette.faint
                                     : row.changed        ? palette.changed
                                                          : palette.plain;
    const QString before_value = padded(row.tag.name, NameWidth) +
                                 padded(row.tag.address.accessText(), AddressWidth) +
                                 padded(QString::number(row.tag.station), StationWidth);
    const int left = width - before_value.size() - ValueWidth - AgeWidth - 2 * Gap;
    return before_value + coloured(value_colour, padded(value, ValueWidth), palette) +
           coloured(palette.faint, padded(ageText(row.age_ms), AgeWidth), palette) +
           coloured(palette.bad, reason(row.error).left(std::max(left, 0)), palette);
}

/** The station with most tags, the first of them. */
int mostShownStation(const QVector<TagDefinition>& tags) {
    QMap<int, int> counts;
    for (const TagDefinition& tag : tags)
        ++counts[tag.station];
    const auto most = std::max_element(counts.begin(), counts.end());
    return most.key();
}

} // namespace

QVector<TagDefinition> tagsToShow(const Project& project, int count) {
    QVector<TagDefinition> tags;
    std::copy_if(project.tags.begin(), project.tags.end(), std::back_inserter(tags),
                 [](const TagDefinition& tag) {
                     return tag.address.kind == AddressKind::Data && tag.dwords() == 1;
                 });
    while (tags.size() > std::max(count, 0)) {
        const int station = mostShownStation(tags);
        const auto last =
            std::find_if(tags.rbegin(), tags.rend(),
                         [station](const TagDefinition& tag) { return tag.station == station; });
        tags.erase(std::next(last).base());
    }
    return tags;
}

QVector<TagRow> readRows(PanelSession& session, const QVector<TagDefinition>& tags,
                         const QVector<TagRow>& before) {
    const QVector<TagResult> results = session.readAll(tags);
    QVector<TagRow> rows;
    for (int i = 0; i < tags.size(); ++i) {
        const TagDefinition& tag = tags[i];
        const LinkSession& link = session.link(tag.link_id);
        TagRow row;
        row.tag = tag;
        row.value = formatValue(tag, results[i].data, ValueFormat::Natural);
        if (!row.value.isEmpty() && !tag.unit.isEmpty())
            row.value += QLatin1Char(' ') + tag.unit;
        row.age_ms = link.stationAgeMsecs(tag.station);
        row.error = results[i].ok() ? link.stationError(tag.station) : results[i].error;
        row.changed = i < before.size() && before[i].value != row.value;
        if (row.value.isEmpty() && i < before.size())
            row.value = before[i].value; // an operator keeps seeing the last one
        rows.append(row);
    }
    return rows;
}

QStringList tableLines(const QVector<TagRow>& rows, int width, const Palette& palette) {
    QStringList lines = {head(palette)};
    for (const TagRow& row : rows)
        lines.append(line(row, width, palette).trimmed());
    return lines;
}
