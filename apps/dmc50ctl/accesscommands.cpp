#include "apps/dmc50ctl/accesscommands.h"

#include <nlohmann/json.hpp>

#include <QSet>

#include <algorithm>

using namespace host;

namespace {

void print(const QVector<ValueRow>& rows, const Options& options) {
    if (options.json)
        printLine(QString::fromStdString(valueJson(rows, options.format).dump()));
    else
        printLine(valueTable(rows, options.format, false));
}

/** Each different error once, for those who only see the standard error. */
void printErrors(const QVector<ValueRow>& rows) {
    QSet<QString> told;
    for (const ValueRow& row : rows) {
        if (row.result.ok() || told.contains(row.result.error))
            continue;
        told.insert(row.result.error);
        printError(row.result.error);
    }
}

bool allOk(const QVector<ValueRow>& rows) {
    return std::all_of(rows.begin(), rows.end(),
                       [](const ValueRow& row) { return row.result.ok(); });
}

QVector<ValueRow> readRows(PanelSession& session, const QVector<TagDefinition>& tags) {
    const QVector<TagResult> results = session.readAll(tags);
    QVector<ValueRow> rows;
    for (int i = 0; i < tags.size(); ++i)
        rows.append({tags[i], results[i]});
    return rows;
}

} // namespace

int runRead(PanelSession& session, const Target& target, const Options& options) {
    session.poll(target.tags);
    const QVector<ValueRow> rows = readRows(session, target.tags);
    print(rows, options);
    printErrors(rows);
    return allOk(rows) ? ExitOk : ExitCommunication;
}

Result<QVector<QByteArray>, QStringList> parseValues(const Target& target) {
    QVector<QByteArray> values;
    QStringList errors;
    for (int i = 0; i < target.values.size(); ++i) {
        const Result<QByteArray> value = parseValue(target.tags[i], target.values[i]);
        if (value)
            values.append(*value);
        else
            errors.append(value.error());
    }
    if (!errors.isEmpty())
        return tl::make_unexpected(errors);
    return values;
}

int runWrite(PanelSession& session, const Target& target, const QVector<QByteArray>& values,
             const Options& options) {
    QVector<ValueRow> rows;
    for (int i = 0; i < target.tags.size() && allOk(rows); ++i) {
        const TagDefinition& tag = target.tags[i];
        rows.append({tag, session.link(tag.link_id).write(tag, values[i], options.must_read_back)});
    }
    print(rows, options);
    printErrors(rows);
    return allOk(rows) ? ExitOk : ExitCommunication;
}
