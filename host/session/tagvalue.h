#ifndef HOST_SESSION_TAGVALUE_H
#define HOST_SESSION_TAGVALUE_H

#include "common/result.h"
#include "host/project/project.h"

#include <QByteArray>

#include <optional>

namespace host {

/** A tag's bytes as people read and write them. The bytes are as the driver has
 *  them: elements one after the other, least significant byte first, bits from
 *  bit 0 of byte 0 upwards. */

enum class ValueFormat {
    Natural, // as the tag's type says: decimal, signed or not, or floating
    Hex,     // "0x" and two digits a byte
    Dec,     // decimal, signed only where the type is
    Bits,    // "0b" and a digit a bit
    Float    // 32-bit elements as floating; others as Natural
};

/** "hex", "dec", "bits", "float". */
std::optional<ValueFormat> valueFormatByName(const QString& name);
QStringList valueFormatNames();

/** The tag's bytes out of the @p dwords that hold it, which are one after the
 *  other, 4 bytes each. */
QByteArray tagData(const TagDefinition& tag, const QByteArray& dwords);

/** True when an element of @p data differs from that of @p other by more than
 *  @p deadband, or cannot be compared: a floating value that is no number, or
 *  missing elements. */
bool differsByMoreThan(const TagDefinition& tag, const QByteArray& data, const QByteArray& other,
                       double deadband);

/** The elements of @p data, tag.count of them where it is complete. */
QStringList formatElements(const TagDefinition& tag, const QByteArray& data, ValueFormat format);

/** The elements on one line: separated by blanks, bits as one run of digits in
 *  the order of their numbers. */
QString formatValue(const TagDefinition& tag, const QByteArray& data, ValueFormat format);

/** Bytes of @p text: as many elements as the tag has, separated by commas, each
 *  decimal, hexadecimal ("0x1f") or binary ("0b101"), or, for the type float, a
 *  number with a fraction. The error says what is wrong and what would be right. */
Result<QByteArray> parseValue(const TagDefinition& tag, const QString& text);

} // namespace host

#endif
