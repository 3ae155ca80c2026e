#include "tests/campaign/journal.h"

#include "trace/escapedtext.h"

#include <cstring>

namespace campaign {

namespace {

constexpr std::size_t KeptEntries = 24;

std::FILE* g_trace = nullptr; // the campaign has one thread

} // namespace

void Journal::note(qint64 usecs, const char* what, const QByteArray& bytes) {
    mix(reinterpret_cast<const char*>(&usecs), sizeof usecs);
    mix(what, int(std::strlen(what)));
    mix(bytes.constData(), bytes.size());
    m_last.push_back({usecs, what, bytes});
    if (m_last.size() > KeptEntries)
        m_last.pop_front();
    if (g_trace)
        std::fprintf(g_trace, "%s\n", qPrintable(m_last.back().text()));
}

void Journal::traceTo(std::FILE* file) {
    g_trace = file;
}

void Journal::mix(const char* bytes, int count) {
    for (int i = 0; i < count; ++i)
        m_digest = (m_digest ^ quint8(bytes[i])) * Q_UINT64_C(0x100000001B3);
}

QString Journal::Entry::text() const {
    return QString::fromLatin1("%1 ms %2 %3")
        .arg(double(usecs) / 1000, 0, 'f', 3)
        .arg(QLatin1String(what), QString::fromLatin1(trace::escapedText(bytes)));
}

QStringList Journal::last() const {
    QStringList lines;
    for (const Entry& entry : m_last)
        lines += entry.text();
    return lines;
}

} // namespace campaign
