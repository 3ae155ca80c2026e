#ifndef RUNTIME_DRIVERS_TXPACKAGE_H
#define RUNTIME_DRIVERS_TXPACKAGE_H

#include <QByteArray>
#include <QList>
#include <QString>
#include <QVector>
#include <QtGlobal>

#include <memory>

/** A frame on its way out, remembered as the sequence of sections that it was
 *  built from. Appends return true. One thread at a time. */
class TxPackage {
public:
    TxPackage();

    bool appendSection(const QByteArray& bytes);
    bool appendString(const QString& text); // as Latin-1
    bool appendByte(quint8 byte);
    bool appendWord(quint16 word);      // least significant byte first
    bool appendDWord(quint32 dword);    // least significant byte first
    bool appendByte2Ascii(quint8 byte); // two upper-case hexadecimal digits

    /** The sum of all bytes so far modulo 256, as a byte or two digits. */
    bool appendLRCByte();
    bool appendLRCAscii();

    /** Exclusive or of all bytes of @p package but its last @p excluded. */
    static quint8 calculateFCS(const QByteArray& package, int excluded);

    /** The exclusive or of all bytes so far as two digits. The argument is for
     *  the callers' convenience; the whole package always counts. */
    bool appendFCSAscii(int ignored);

    /** Replace the bytes, leaving the sections as they are. */
    void setData(const QByteArray& bytes);
    void setData(const void* bytes, int length);

    /** Replaces the sizes. A negative size -k stands for the value of the first
     *  byte of section k; it counts as 0 where that byte does not exist or lies
     *  behind the section whose size it is. */
    void setSectionSize(const QList<int>& sizes);

    int numberOfSections() const;
    bool validSectionNumber(int i) const;

    /** Offset of section @p i in the data; -1 for a section that does not exist. */
    int sectionStartIndex(int i) const;

    /** Size and bytes of section @p i; 0 and none for one that does not exist. */
    int sectionSize(int i) const;
    QByteArray dataAt(int i) const;

    /** Sum of the sizes of the appended sections, whatever setData() did since. */
    int runningTotal() const { return m_total; }

    int totalSize() const { return m_data->size(); }
    const char* data() const { return m_data->constData(); }
    QByteArray byteArrayData() const { return *m_data; }
    QString toString() const; // see dumpByteArray()

    void clearAll();

    static QList<int> EmptyPackageSizeList() { return QList<int>(); }

private:
    /** Offsets of sections 0 to @p count, the last one being the end. */
    QVector<int> startsUpTo(int count) const;

    std::unique_ptr<QByteArray> m_data; // never null
    QList<int> m_section_sizes;
    int m_total;
};

#endif
