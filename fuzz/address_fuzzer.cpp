// Any text as a tag address: the parser and the patterns must agree.
#include "tests/support/addresspatterns.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), int(size));
    if (!patternsAgree(text))
        std::abort();
    return 0;
}
