#ifndef TESTS_SUPPORT_ERROROF_H
#define TESTS_SUPPORT_ERROROF_H

#include "common/result.h"

/** Why there is no result; empty when there is one. */
template <typename Value, typename Error>
Error errorOf(const Result<Value, Error>& result) {
    return result ? Error() : result.error();
}

#endif
