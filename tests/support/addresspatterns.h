#ifndef TESTS_SUPPORT_ADDRESSPATTERNS_H
#define TESTS_SUPPORT_ADDRESSPATTERNS_H

#include "runtime/drivers/dmc50v3/addresssyntax.h"

#include <QRegExp>

// Inline, so that only programs which carry the driver need it.

inline void takePattern(TagAddress& tag, TagAddress::Form form, quint32 address,
                        const QString& station, const QString& bit) {
    tag.form = form;
    tag.address = address;
    tag.has_station = !station.isEmpty();
    tag.station = quint8(station.toUInt());
    tag.has_bit = !bit.isEmpty();
    tag.bit = bit.toUInt();
}

/** What regular expressions make of an address text: the syntax in its shortest
 *  form, as another way to the same answer as TagAddress::parse(). */
inline bool parseWithPatterns(const QString& text, TagAddress& tag) {
    QRegExp pa(QString::fromLatin1("^(?:(\\d+)-)?PA([\\da-f]{3})([\\da-f]+)(?:\\.(\\d+))?"),
               Qt::CaseInsensitive);
    if (pa.indexIn(text) == 0) {
        const quint32 page = pa.cap(2).toUInt(nullptr, 16);
        takePattern(tag, TagAddress::PA, (page << 20) + pa.cap(3).toUInt(nullptr, 16), pa.cap(1),
                    pa.cap(4));
        return true;
    }
    QRegExp na(QString::fromLatin1("^(?:(\\d+)-)?NA([\\da-f]+)(?:\\.(\\d+))?"),
               Qt::CaseInsensitive);
    if (na.indexIn(text) != 0)
        return false;
    takePattern(tag, TagAddress::NA, na.cap(2).toUInt(nullptr, 16), na.cap(1), na.cap(3));
    return true;
}

/** Whether both ways agree on @p text. */
inline bool patternsAgree(const QString& text) {
    TagAddress ours, expected;
    const bool matches = parseWithPatterns(text, expected);
    if (TagAddress::parse(text, ours) != matches)
        return false;
    return !matches ||
           (ours.form == expected.form && ours.address == expected.address &&
            ours.has_station == expected.has_station && ours.station == expected.station &&
            ours.has_bit == expected.has_bit && ours.bit == expected.bit);
}

#endif
