#ifndef TRACE_ESCAPEDTEXT_H
#define TRACE_ESCAPEDTEXT_H

#include <QByteArray>

#include <optional>

namespace trace {

/** Bytes as readable text: printable ASCII stands for itself, every other byte
 *  and '<' as two uppercase hexadecimal digits in angle brackets: <02>0100.
 *  Two different byte strings never give the same text. */
QByteArray escapedText(const QByteArray& bytes);

/** The bytes that @p text stands for, or nothing when a '<' does not begin an
 *  escape of two hexadecimal digits of either case. */
std::optional<QByteArray> unescapedBytes(const QByteArray& text);

} // namespace trace

#endif
