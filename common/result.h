#ifndef COMMON_RESULT_H
#define COMMON_RESULT_H

#include <QString>
#include <tl/expected.hpp>

/** What came of something that can fail: the value, or why there is none, as a
 *  text for people that is never empty. Whoever gets one looks before he takes
 *  the value. */
template <typename Value, typename Error = QString>
using Result = tl::expected<Value, Error>;

/** What a function that fails returns: Failure(text). */
using Failure = tl::unexpected<QString>;

#endif
