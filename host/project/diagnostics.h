#ifndef HOST_PROJECT_DIAGNOSTICS_H
#define HOST_PROJECT_DIAGNOSTICS_H

#include "host/project/project.h"

#include <QStringList>

namespace host {

/** Collects what is wrong with one project file. */
class Diagnostics {
public:
    /** @p file as the user named it; empty where there is none, and no places. */
    explicit Diagnostics(const QString& file) : m_file(file) {}

    void add(const SourcePlace& place, const QString& text);

    bool isEmpty() const { return m_entries.isEmpty(); }

    /** "file:line:column: text" in the order of the file. */
    QStringList lines() const;

private:
    struct Entry {
        SourcePlace place;
        QString text;
    };

    QString prefix(const SourcePlace& place) const;

    const QString m_file;
    QVector<Entry> m_entries;
};

} // namespace host

#endif
