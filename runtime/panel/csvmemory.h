#ifndef RUNTIME_PANEL_CSVMEMORY_H
#define RUNTIME_PANEL_CSVMEMORY_H

#include <QtGlobal>

/** Bytes of the heap that a request for @p bytes takes: glibc puts a word before
 *  them, rounds up to two words and gives out no less than four. */
inline qint64 heapBytes(qint64 bytes) {
    const qint64 word = sizeof(void*);
    const qint64 rounded = (bytes + word + 2 * word - 1) / (2 * word) * (2 * word);
    return qMax(rounded, 4 * word);
}

/** Bytes of a QString. Its head is QStringData of Qt 5 (24 bytes where pointers
 *  have 8, 16 where they have 4) or QString::Data of Qt 4.8 (20 on the panel);
 *  behind it stand UTF-16 and a final zero. Empty texts share one. */
inline qint64 bytesOfText(qint64 characters) {
    const qint64 head = 4 * sizeof(int) + sizeof(void*);
    return characters == 0 ? 0 : heapBytes(head + 2 * (characters + 1));
}

/** Bytes of a QStringList without its texts: the head (QListData::Data, four
 *  numbers, in Qt 4.8 one more) and one pointer a field. */
inline qint64 bytesOfList(qint64 fields) {
    return heapBytes(qint64(4 * sizeof(int) + sizeof(void*)) + fields * qint64(sizeof(void*)));
}

/** Bytes of one more item at the end of a list that grows by itself: it doubles,
 *  so it has room for up to twice its items. */
const qint64 BytesOfListGrowth = 2 * sizeof(void*);

/** Keeps account of the memory that the load of a table takes, so that it ends
 *  before the machine or the process has none left. Estimates as above, not
 *  counts: benchmarks and tests hold them against the measured peak. */
class CsvMemory {
public:
    /** @p available bytes, of which a part stays for everybody else. */
    explicit CsvMemory(quint64 available) : m_left(0) { restart(available); }

    /** A new account of what is available now. What was taken before and is
     *  still held is not in it. */
    void restart(quint64 available) {
        const quint64 kept = available / KeptFraction + KeptBytes;
        const quint64 room = available > kept ? available - kept : 0;
        m_left = qint64(qMin(room, quint64(Q_INT64_C(1) << 62)));
    }

    bool hasRoomFor(qint64 bytes) const { return bytes <= m_left; }

    /** False, and nothing is taken, if there is not so much. */
    bool take(qint64 bytes) {
        if (!hasRoomFor(bytes))
            return false;
        m_left -= bytes;
        return true;
    }

    void giveBack(qint64 bytes) { m_left += bytes; }

private:
    // Estimates are wrong by some percent, and the other programs go on meanwhile.
    static const quint64 KeptFraction = 8;
    static const quint64 KeptBytes = 4 * 1024 * 1024; // the stream's buffers

    qint64 m_left;
};

#endif
