#include "apps/dmc50ctl/valuetable.h"

#include "apps/dmc50ctl/stationtable.h"

#include <nlohmann/json.hpp>

#include <QDateTime>

#include <algorithm>
#include <cmath>
#include <cstdio>

using namespace host;

namespace {

constexpr int ColumnGap = 2;

QString ageText(qint64 msecs) {
    return msecs < 0 ? QStringLiteral("-")
                     : QString::fromLatin1("%1 s").arg(double(msecs) / 1000, 0, 'f', 1);
}

QString addressOf(const TagDefinition& tag) {
    return tag.address.accessText();
}

QStringList cells(const ValueRow& row, ValueFormat format, bool with_age) {
    const TagDefinition& tag = row.tag;
    const QString value = formatValue(tag, row.result.data, format);
    QStringList texts = {tag.name, addressOf(tag), QString::number(tag.station),
                         value.isEmpty() ? QStringLiteral("-") : value, tag.unit};
    if (with_age)
        texts.append(ageText(row.age_ms));
    texts.append(row.result.error);
    return texts;
}

nlohmann::ordered_json elementJson(const TagDefinition& tag, const QString& text,
                                   ValueFormat format) {
    const bool as_text =
        (format == ValueFormat::Hex || format == ValueFormat::Bits) && tag.type.bits > 1;
    if (as_text)
        return text.toStdString();
    bool is_integer = false;
    const qint64 integer = text.toLongLong(&is_integer);
    if (is_integer)
        return integer;
    bool is_number = false;
    const double number = text.toDouble(&is_number);
    return is_number && std::isfinite(number) ? nlohmann::ordered_json(number)
                                              : nlohmann::ordered_json(text.toStdString());
}

nlohmann::ordered_json elementsJson(const ValueRow& row, ValueFormat format) {
    nlohmann::ordered_json values = nlohmann::ordered_json::array();
    for (const QString& text : formatElements(row.tag, row.result.data, format))
        values.push_back(elementJson(row.tag, text, format));
    if (values.empty())
        return nullptr;
    return row.tag.count == 1 ? values.front() : values;
}

void addWatched(nlohmann::ordered_json& entry, const Watched& watched) {
    const TagState& state = watched.state;
    entry["quality"] = qualityName(state.quality);
    if (state.when.utc_msecs >= 0)
        entry["time"] = QDateTime::fromMSecsSinceEpoch(state.when.utc_msecs, Qt::UTC)
                            .toString(Qt::ISODateWithMs)
                            .toStdString();
    entry["sequence"] = state.sequence;
    entry["station_health"] = healthJson(watched.health, watched.now);
}

} // namespace

QString alignedColumns(const QVector<QStringList>& rows) {
    QVector<int> widths;
    for (const QStringList& row : rows) {
        widths.resize(qMax(widths.size(), row.size()));
        for (int i = 0; i < row.size(); ++i)
            widths[i] = qMax(widths[i], row[i].size());
    }
    QStringList lines;
    for (const QStringList& row : rows) {
        QString line;
        for (int i = 0; i < row.size(); ++i) {
            // A column without a text in it takes no room.
            if (widths[i] > 0)
                line += row[i].leftJustified(widths[i] + ColumnGap);
        }
        lines.append(line.trimmed());
    }
    return lines.join(QLatin1Char('\n'));
}

QString valueTable(const QVector<ValueRow>& rows, ValueFormat format, bool with_age) {
    QVector<QStringList> table;
    for (const ValueRow& row : rows)
        table.append(cells(row, format, with_age));
    QStringList head = {QStringLiteral("NAME"), QStringLiteral("ADDRESS"),
                        QStringLiteral("STATION"), QStringLiteral("VALUE"), QStringLiteral("UNIT")};
    if (with_age)
        head.append(QStringLiteral("AGE"));
    head.append(QStringLiteral("ERROR"));
    // No head over a column that is empty throughout.
    for (int i = 0; i < head.size(); ++i) {
        const bool used = std::any_of(table.begin(), table.end(),
                                      [i](const QStringList& row) { return !row[i].isEmpty(); });
        if (!used)
            head[i].clear();
    }
    table.prepend(head);
    return alignedColumns(table);
}

nlohmann::ordered_json valueJson(const QVector<ValueRow>& rows, ValueFormat format) {
    nlohmann::ordered_json array = nlohmann::ordered_json::array();
    for (const ValueRow& row : rows) {
        const TagDefinition& tag = row.tag;
        nlohmann::ordered_json entry = {{"name", tag.name.toStdString()},
                                        {"address", addressOf(tag).toStdString()},
                                        {"station", tag.station},
                                        {"type", tag.type.name.toStdString()},
                                        {"value", elementsJson(row, format)},
                                        {"unit", tag.unit.toStdString()}};
        if (row.age_ms >= 0)
            entry["age_ms"] = row.age_ms;
        if (row.watched)
            addWatched(entry, *row.watched);
        if (!row.result.ok())
            entry["error"] = row.result.error.toStdString();
        array.push_back(entry);
    }
    return array;
}

void printLine(const QString& text) {
    std::puts(text.toUtf8().constData());
    std::fflush(stdout);
}

void printError(const QString& text) {
    std::fprintf(stderr, "dmc50ctl: %s\n", text.toUtf8().constData());
}
