#ifndef RUNTIME_DRIVERS_PACKFORMAT_H
#define RUNTIME_DRIVERS_PACKFORMAT_H

#include <QtGlobal>

/** One field of a packed image. */
struct PackField {
    enum Kind {
        Value, // one number, passed by value when packing
        Block, // groups of bytes, passed by pointer
        Zeros, // no argument: written as zeros, skipped when reading
        Skip   // no argument: left alone
    };

    Kind kind;
    bool counted;  // has a count before its letter
    bool reversed; // each group stands with its most significant byte first
    int group;     // bytes of one number
    int count;     // groups
    int offset;    // in the image, bytes

    int size() const { return group * count; }
};

/** Walks over the fields of a format text: letters, each with or without a
 *  decimal count before it. The text must outlive the walk.
 *
 *  Letters: C c (1 byte), S s v (2 bytes), I L V i l (4 bytes), n N (2 and 4 bytes,
 *  most significant first), x (zero byte), X (skipped byte). A count may stand
 *  before C c N V n v, when it is not 0, and before x X. */
class PackFormat {
public:
    enum Error { NoError, BadLetter, BadCountedField };

    explicit PackFormat(const char* format);

    /** Moves to the next field. False at the end and at the first error. */
    bool next();

    /** The field that next() moved to. */
    const PackField& field() const { return m_field; }

    /** Bytes of all fields so far; an error where they would exceed an int. */
    int size() const { return m_size; }

    Error error() const { return m_error; }

private:
    qint64 readCount();
    bool fail(bool counted);

    const char* m_rest; // not owned
    PackField m_field;
    int m_size;
    Error m_error;
};

#endif
