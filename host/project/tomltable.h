#ifndef HOST_PROJECT_TOMLTABLE_H
#define HOST_PROJECT_TOMLTABLE_H

#include "host/project/diagnostics.h"
#include "host/project/limits.h"

#include <toml++/toml.h>

#include <optional>

namespace host {

/** One table of a project file, read key by key. What is asked for becomes
 *  known; every key that nobody asked for is a mistake. */
class TomlTable {
public:
    /** @p section as the file writes it, such as "[[tag]]". The table and the
     *  diagnostics outlive this object. */
    TomlTable(const toml::table& table, const QString& section, Diagnostics& diagnostics);

    /** Each returns nothing for an absent key, and for a wrong value, which it
     *  reports. A whole number must lie in @p range. */
    std::optional<QString> text(const char* key);
    std::optional<int> integer(const char* key, const Range& range);
    std::optional<bool> flag(const char* key);

    /** Like text(), and reports an absent key; @p example shows how to write it. */
    std::optional<QString> requiredText(const char* key, const char* example);
    /** Like integer(), and reports an absent key. */
    std::optional<int> requiredInteger(const char* key, const Range& range);

    /** One of @p choices. */
    std::optional<QString> choice(const char* key, const QStringList& choices);

    /** Where the key's value stands, or else the table. */
    SourcePlace placeOf(const char* key) const;
    SourcePlace place() const;

    /** Something is wrong with the value of @p key. */
    void report(const char* key, const QString& problem);

    /** Call it after all keys have been asked for. */
    void reportUnknownKeys();

private:
    const toml::node* find(const char* key);
    void reportAbsent(const char* key, const QString& example);
    void reportWrongKind(const char* key, const QString& wanted, const toml::node& found);

    const toml::table& m_table;
    const QString m_section;
    Diagnostics& m_diagnostics;
    QStringList m_known;
};

SourcePlace placeOf(const toml::node& node);
SourcePlace placeOf(const toml::source_region& region);

} // namespace host

#endif
