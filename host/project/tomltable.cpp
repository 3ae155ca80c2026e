#include "host/project/tomltable.h"

#include "host/project/spelling.h"

namespace host {

namespace {

QString kindName(const toml::node& node) {
    switch (node.type()) {
    case toml::node_type::string:
        return QStringLiteral("a text");
    case toml::node_type::integer:
        return QStringLiteral("a whole number");
    case toml::node_type::floating_point:
        return QStringLiteral("a number with a fraction");
    case toml::node_type::boolean:
        return QStringLiteral("true or false");
    case toml::node_type::array:
        return QStringLiteral("a list");
    case toml::node_type::table:
        return QStringLiteral("a table");
    default:
        return QStringLiteral("a date or time");
    }
}

QString quoted(const QStringList& texts) {
    QStringList quoted_texts;
    for (const QString& text : texts)
        quoted_texts.append(QLatin1Char('"') + text + QLatin1Char('"'));
    return quoted_texts.join(QLatin1String(", "));
}

} // namespace

SourcePlace placeOf(const toml::source_region& region) {
    return {int(region.begin.line), int(region.begin.column)};
}

SourcePlace placeOf(const toml::node& node) {
    return placeOf(node.source());
}

TomlTable::TomlTable(const toml::table& table, const QString& section, Diagnostics& diagnostics)
    : m_table(table), m_section(section), m_diagnostics(diagnostics) {}

SourcePlace TomlTable::place() const {
    return host::placeOf(m_table);
}

SourcePlace TomlTable::placeOf(const char* key) const {
    const toml::node* const node = m_table.get(key);
    return node ? host::placeOf(*node) : place();
}

void TomlTable::report(const char* key, const QString& problem) {
    m_diagnostics.add(placeOf(key), problem);
}

const toml::node* TomlTable::find(const char* key) {
    m_known.append(QLatin1String(key));
    return m_table.get(key);
}

void TomlTable::reportWrongKind(const char* key, const QString& wanted, const toml::node& found) {
    report(key, QString::fromLatin1("'%1' must be %2, not %3")
                    .arg(QLatin1String(key), wanted, kindName(found)));
}

void TomlTable::reportAbsent(const char* key, const QString& example) {
    report(key, QString::fromLatin1("%1 has no '%2'; add a line such as %2 = %3")
                    .arg(m_section, QLatin1String(key), example));
}

std::optional<QString> TomlTable::text(const char* key) {
    const toml::node* const node = find(key);
    if (!node)
        return std::nullopt;
    if (const auto value = node->value_exact<std::string>())
        return QString::fromStdString(*value);
    reportWrongKind(key, QStringLiteral("a text in quotes"), *node);
    return std::nullopt;
}

std::optional<QString> TomlTable::requiredText(const char* key, const char* example) {
    if (!m_table.contains(key))
        reportAbsent(key, QLatin1Char('"') + QLatin1String(example) + QLatin1Char('"'));
    const std::optional<QString> value = text(key);
    if (!value || !value->trimmed().isEmpty())
        return value;
    report(key, QString::fromLatin1("'%1' is empty; write something such as \"%2\"")
                    .arg(QLatin1String(key), QLatin1String(example)));
    return std::nullopt;
}

std::optional<int> TomlTable::integer(const char* key, const Range& range) {
    const toml::node* const node = find(key);
    if (!node)
        return std::nullopt;
    const QString wanted =
        QString::fromLatin1("a whole number from %1 to %2").arg(range.least).arg(range.most);
    const auto value = node->value_exact<int64_t>();
    if (!value) {
        reportWrongKind(key, wanted, *node);
        return std::nullopt;
    }
    if (!range.holds(*value)) {
        report(key, QString::fromLatin1("'%1' must be %2, not %3")
                        .arg(QLatin1String(key), wanted)
                        .arg(*value));
        return std::nullopt;
    }
    return int(*value);
}

std::optional<int> TomlTable::requiredInteger(const char* key, const Range& range) {
    if (!m_table.contains(key))
        reportAbsent(key, QString::number(range.least));
    return integer(key, range);
}

std::optional<bool> TomlTable::flag(const char* key) {
    const toml::node* const node = find(key);
    if (!node)
        return std::nullopt;
    if (const auto value = node->value_exact<bool>())
        return value;
    reportWrongKind(key, QStringLiteral("true or false"), *node);
    return std::nullopt;
}

std::optional<QString> TomlTable::choice(const char* key, const QStringList& choices) {
    const std::optional<QString> value = text(key);
    if (!value || choices.contains(*value))
        return value;
    const QString near = nearestSpelling(*value, choices);
    const QString hint =
        near.isEmpty() ? QString() : QString::fromLatin1("; did you mean \"%1\"?").arg(near);
    report(key, QString::fromLatin1("'%1' must be one of %2, not \"%3\"%4")
                    .arg(QLatin1String(key), quoted(choices), *value, hint));
    return std::nullopt;
}

void TomlTable::reportUnknownKeys() {
    for (const auto& [key, node] : m_table) {
        const QString name = QString::fromUtf8(key.data(), int(key.length()));
        if (!m_known.contains(name)) {
            m_diagnostics.add(host::placeOf(key.source()),
                              QString::fromLatin1("unknown key '%1' in %2%3")
                                  .arg(name, m_section, spellingHint(name, m_known)));
        }
    }
}

} // namespace host
