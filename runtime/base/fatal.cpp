#include "runtime/base/fatal.h"

#include <QtGlobal>

#include <cstdlib>

void fatalConditionFailed(const char* condition, const char* file, int line) {
    qFatal("ASSERT: \"%s\" in file %s, line %d", condition, file, line);
    std::abort(); // a host's message handler may return from qFatal
}
