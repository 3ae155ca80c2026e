#include "runtime/drivers/packformat.h"

#include <limits>

namespace {

struct Letter {
    char letter;
    PackField::Kind kind; // of the letter without a count
    int group;
    bool reversed;
    bool countable;
};

const Letter LETTERS[] = {
    {'C', PackField::Value, 1, false, true},  {'c', PackField::Value, 1, false, true},
    {'I', PackField::Value, 4, false, false}, {'L', PackField::Value, 4, false, false},
    {'i', PackField::Value, 4, false, false}, {'l', PackField::Value, 4, false, false},
    {'V', PackField::Value, 4, false, true},  {'N', PackField::Value, 4, true, true},
    {'S', PackField::Value, 2, false, false}, {'s', PackField::Value, 2, false, false},
    {'v', PackField::Value, 2, false, true},  {'n', PackField::Value, 2, true, true},
    {'x', PackField::Zeros, 1, false, true},  {'X', PackField::Skip, 1, false, true},
};

const qint64 LargestSize = std::numeric_limits<int>::max();

const Letter* findLetter(char letter) {
    for (const Letter& known : LETTERS) {
        if (known.letter == letter)
            return &known;
    }
    return nullptr;
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

} // namespace

PackFormat::PackFormat(const char* format)
    : m_rest(format), m_field(), m_size(0), m_error(NoError) {}

bool PackFormat::next() {
    if (m_error != NoError || *m_rest == '\0')
        return false;

    const bool counted = isDigit(*m_rest);
    const qint64 count = counted ? readCount() : 1;
    const Letter* letter = findLetter(*m_rest);
    if (!letter || (counted && !letter->countable))
        return fail(counted);
    if (count == 0 && letter->kind == PackField::Value)
        return fail(counted);
    if (m_size + count * letter->group > LargestSize)
        return fail(counted);

    ++m_rest;
    m_field.kind = counted && letter->kind == PackField::Value ? PackField::Block : letter->kind;
    m_field.counted = counted;
    m_field.reversed = letter->reversed;
    m_field.group = letter->group;
    m_field.count = int(count);
    m_field.offset = m_size;
    m_size += m_field.size();
    return true;
}

/** Stops growing where no field could be that large. */
qint64 PackFormat::readCount() {
    qint64 count = 0;
    for (; isDigit(*m_rest); ++m_rest)
        count = qMin(count * 10 + (*m_rest - '0'), LargestSize + 1);
    return count;
}

bool PackFormat::fail(bool counted) {
    m_error = counted ? BadCountedField : BadLetter;
    return false;
}
