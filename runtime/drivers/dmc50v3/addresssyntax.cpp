#include "runtime/drivers/dmc50v3/addresssyntax.h"

namespace {

const int PageDigits = 3; // of the PA form; they select a page of 2^20 double words
const int PageShift = 20;

bool isDecimal(QChar c) {
    return c.isDigit();
}

bool isHexadecimal(QChar c) {
    const ushort lower = c.unicode() | 0x20;
    return c.isDigit() || (lower >= 'a' && lower <= 'f');
}

/** Reads forward over a text; a failed step leaves the position undefined. */
class Scanner {
public:
    explicit Scanner(const QString& text) : m_text(text), m_position(0) {}

    bool skip(char letter) {
        if (m_position == m_text.size() || m_text.at(m_position).toLower() != QLatin1Char(letter))
            return false;
        ++m_position;
        return true;
    }

    /** At most @p max characters that @p accepts, as a number in @p base. Other
     *  alphabets' digits are digits but no number: they make the value 0. */
    int number(bool (*accepts)(QChar), int base, int max, quint32& value) {
        const int start = m_position;
        quint64 sum = 0;
        bool valid = true;
        while (m_position < m_text.size() && m_position - start < max &&
               accepts(m_text.at(m_position))) {
            const ushort c = m_text.at(m_position++).unicode();
            valid = valid && c < 128 && sum <= Q_UINT64_C(0xFFFFFFFF);
            sum = sum * quint64(base) + quint64(c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10);
        }
        value = valid && sum <= Q_UINT64_C(0xFFFFFFFF) ? quint32(sum) : 0;
        return m_position - start;
    }

    int left() const { return m_text.size() - m_position; }

private:
    const QString& m_text;
    int m_position;
};

bool parseStation(Scanner& scanner, TagAddress& parsed) {
    quint32 station = 0;
    parsed.has_station = scanner.number(isDecimal, 10, scanner.left(), station) > 0;
    parsed.station = quint8(station);
    return !parsed.has_station || scanner.skip('-');
}

bool parsePage(Scanner& scanner, TagAddress& parsed) {
    quint32 page = 0, offset = 0;
    if (scanner.number(isHexadecimal, 16, PageDigits, page) < PageDigits ||
        scanner.number(isHexadecimal, 16, scanner.left(), offset) < 1)
        return false;
    parsed.address = (page << PageShift) + offset;
    return true;
}

bool parseDoubleWord(Scanner& scanner, TagAddress& parsed) {
    if (scanner.skip('p')) {
        parsed.form = TagAddress::PA;
        return scanner.skip('a') && parsePage(scanner, parsed);
    }
    parsed.form = TagAddress::NA;
    return scanner.skip('n') && scanner.skip('a') &&
           scanner.number(isHexadecimal, 16, scanner.left(), parsed.address) > 0;
}

} // namespace

bool TagAddress::parse(const QString& text, TagAddress& parsed) {
    Scanner scanner(text);
    if (!parseStation(scanner, parsed) || !parseDoubleWord(scanner, parsed))
        return false;
    parsed.bit = 0;
    parsed.has_bit =
        scanner.skip('.') && scanner.number(isDecimal, 10, scanner.left(), parsed.bit) > 0;
    return true;
}
