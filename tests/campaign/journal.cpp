#include "tests/campaign/journal.h"

#include "trace/escapedtext.h"

#include <cstring>

namespace campaign {

namespace {

constexpr std::size_t KeptEntries = 24;

} // namespace

void Journal::note(qint64 usecs, const char* what, const QByteArray& bytes) {
    mix(reinterpret_cast<const char*>(&usecs), sizeof usecs);
    mix(what, int(std::strlen(what)));
    mix(bytes.constData(), bytes.size());
    m_last.push_back({usecs, what, bytes});
    if (m_last.size() > KeptEntries)
        m_last.pop_front();
}

void Journal::mix(const char* bytes, int count) {
    for (int i = 0; i < count; ++i)
        m_digest = (m_digest ^ quint8(bytes[i])) * Q_UINT64_C(0x100000001B3);
}

QStringList Journal::last() const {
    QStringList lines;
    for (const Entry& entry : m_last)
        lines += QString::fromLatin1("%1 ms %2 %3")
                     .arg(double(entry.usecs) / 1000, 0, 'f', 3)
                     .arg(QLatin1String(entry.what), QString::fromLatin1(trace::escapedText(entry.bytes)));
    return lines;
}

} // namespace campaign
