#include "host/project/diagnostics.h"

#include <algorithm>
#include <tuple>

namespace host {

void Diagnostics::add(const SourcePlace& place, const QString& text) {
    m_entries.append({place, text});
}

QStringList Diagnostics::lines() const {
    QVector<Entry> sorted = m_entries;
    std::stable_sort(sorted.begin(), sorted.end(), [](const Entry& a, const Entry& b) {
        return std::tie(a.place.line, a.place.column) < std::tie(b.place.line, b.place.column);
    });
    QStringList lines;
    for (const Entry& entry : sorted)
        lines.append(prefix(entry.place) + entry.text);
    return lines;
}

QString Diagnostics::prefix(const SourcePlace& place) const {
    if (m_file.isEmpty())
        return QString();
    if (place.line == 0)
        return m_file + QLatin1String(": ");
    return QString::fromLatin1("%1:%2:%3: ").arg(m_file).arg(place.line).arg(place.column);
}

} // namespace host
