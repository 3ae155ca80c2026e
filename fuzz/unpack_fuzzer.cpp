// A format text and an image, both from outside, against the unpacker. The
// variadic front end cannot be given targets that fit a format known only at run
// time, so the field walk gets targets of exactly the field's size, and the front
// end gets many targets that are each large enough for any field.
#include "runtime/drivers/datapack.h"
#include "runtime/drivers/packformat.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

const size_t MaxImage = 1024;
const size_t FrontEndTargets = 8;

typedef std::unique_ptr<char[]> Bytes;

void require(bool condition) {
    if (!condition)
        std::abort();
}

/** Heap targets that a sanitizer guards to the byte. */
class ExactTargets : public PackArguments {
public:
    void add(size_t size) {
        m_targets.emplace_back(new char[size]);
        m_sizes.push_back(size);
    }

    quint32 nextValue() override {
        quint32 value = 0;
        std::memcpy(&value, m_targets[m_next].get(), m_sizes[m_next]);
        ++m_next;
        return value;
    }

    void* nextPointer() override { return m_targets[m_next++].get(); }

    size_t count() const { return m_targets.size(); }
    size_t taken() const { return m_next; }
    void rewind() { m_next = 0; }
    const char* target(size_t i) const { return m_targets[i].get(); }
    size_t size(size_t i) const { return m_sizes[i]; }

private:
    std::vector<Bytes> m_targets;
    std::vector<size_t> m_sizes; // values: at most 4 bytes
    size_t m_next = 0;
};

/** The front end must do what the field walk did. */
void checkFrontEnd(const char* image, const std::string& format, const ExactTargets& expected,
                   int expected_result) {
    char t[FrontEndTargets][MaxImage];
    const int result =
        DataUnpack(image, format.c_str(), t[0], t[1], t[2], t[3], t[4], t[5], t[6], t[7]);
    require(result == expected_result);
    for (size_t i = 0; i < expected.count(); ++i)
        require(std::memcmp(t[i], expected.target(i), expected.size(i)) == 0);
}

/** Packing what was unpacked must give the fields of the image again. */
void checkRoundTrip(const char* image, const std::string& format, ExactTargets& values) {
    PackFormat fields(format.c_str());
    while (fields.next()) {
    }
    std::string packed(size_t(fields.size()), '\0');
    values.rewind();
    require(packFields(&packed[0], format.c_str(), values) == fields.size());

    PackFormat walk(format.c_str());
    while (walk.next()) {
        const PackField& field = walk.field();
        if (field.kind == PackField::Value || field.kind == PackField::Block)
            require(std::memcmp(&packed[size_t(field.offset)], image + field.offset,
                                size_t(field.size())) == 0);
    }
}

/** The format is the input up to its first NUL, the image what follows. */
std::string formatOf(const uint8_t* data, size_t size) {
    return std::string(data, std::find(data, data + size, 0));
}

/** Exactly @p needed bytes, zeros where the input ends too early. */
Bytes imageOf(const uint8_t* data, size_t size, size_t needed) {
    Bytes image(new char[needed]());
    std::memcpy(image.get(), data, std::min(size, needed));
    return image;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string format = formatOf(data, size);
    ExactTargets targets;
    PackFormat fields(format.c_str());
    while (fields.next()) {
        const PackField& field = fields.field();
        if (size_t(fields.size()) > MaxImage)
            return 0;
        if (field.kind == PackField::Value || field.kind == PackField::Block)
            targets.add(size_t(field.size()));
    }

    const size_t image_at = std::min(size, format.size() + 1);
    const Bytes image = imageOf(data + image_at, size - image_at, size_t(fields.size()));
    const int result = unpackFields(image.get(), format.c_str(), targets);
    require(result == (fields.error() == PackFormat::NoError ? fields.size() : -1));
    require(targets.taken() == targets.count());

    if (targets.count() <= FrontEndTargets)
        checkFrontEnd(image.get(), format, targets, result);
    if (fields.error() == PackFormat::NoError)
        checkRoundTrip(image.get(), format, targets);
    return 0;
}
