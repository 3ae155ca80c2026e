#include "runtime/drivers/txpackage.h"

#include "runtime/drivers/addresstext.h"
#include "runtime/drivers/byteorder.h"
#include "runtime/drivers/checksums.h"

namespace {

QByteArray twoHexDigits(quint8 byte) {
    return QByteArray(1, char(byte)).toHex().toUpper();
}

} // namespace

TxPackage::TxPackage() : m_data(new QByteArray), m_total(0) {}

bool TxPackage::appendSection(const QByteArray& bytes) {
    m_data->append(bytes);
    m_section_sizes.append(bytes.size());
    m_total += bytes.size();
    return true;
}

bool TxPackage::appendString(const QString& text) {
    return appendSection(text.toLatin1());
}

bool TxPackage::appendByte(quint8 byte) {
    return appendSection(QByteArray(1, char(byte)));
}

bool TxPackage::appendWord(quint16 word) {
    return appendSection(wordToByteArray(word));
}

bool TxPackage::appendDWord(quint32 dword) {
    return appendSection(intToByteArray(int(dword)));
}

bool TxPackage::appendByte2Ascii(quint8 byte) {
    return appendSection(twoHexDigits(byte));
}

bool TxPackage::appendLRCByte() {
    return appendByte(UInt8CheckSum(data(), totalSize()));
}

bool TxPackage::appendLRCAscii() {
    return appendByte2Ascii(UInt8CheckSum(data(), totalSize()));
}

quint8 TxPackage::calculateFCS(const QByteArray& package, int excluded) {
    return XorUInt8CheckSum(package.constData(), package.size() - excluded);
}

bool TxPackage::appendFCSAscii(int /*ignored*/) {
    return appendByte2Ascii(calculateFCS(*m_data, 0));
}

void TxPackage::setData(const QByteArray& bytes) {
    *m_data = bytes;
}

void TxPackage::setData(const void* bytes, int length) {
    *m_data = QByteArray(static_cast<const char*>(bytes), length);
}

void TxPackage::setSectionSize(const QList<int>& sizes) {
    m_section_sizes = sizes;
}

int TxPackage::numberOfSections() const {
    return m_section_sizes.size();
}

bool TxPackage::validSectionNumber(int i) const {
    return i >= 0 && i < numberOfSections();
}

int TxPackage::sectionStartIndex(int i) const {
    return validSectionNumber(i) ? startsUpTo(i).last() : -1;
}

int TxPackage::sectionSize(int i) const {
    if (!validSectionNumber(i))
        return 0;
    const QVector<int> starts = startsUpTo(i + 1);
    return starts.at(i + 1) - starts.at(i);
}

QByteArray TxPackage::dataAt(int i) const {
    return validSectionNumber(i) ? m_data->mid(sectionStartIndex(i), sectionSize(i)) : QByteArray();
}

QString TxPackage::toString() const {
    return dumpByteArray(*m_data);
}

void TxPackage::clearAll() {
    m_data->clear();
    m_section_sizes.clear();
    m_total = 0;
}

QVector<int> TxPackage::startsUpTo(int count) const {
    QVector<int> starts(1, 0);
    for (int i = 0; i < count; ++i) {
        int size = m_section_sizes.at(i);
        if (size < 0) {
            // Only sections up to this one have a known start to take a size from.
            const int size_at = size >= -i ? starts.at(-size) : totalSize();
            size = size_at < totalSize() ? uchar(m_data->at(size_at)) : 0;
        }
        starts.append(starts.last() + size);
    }
    return starts;
}
