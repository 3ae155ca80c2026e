#include "runtime/drivers/datapack.h"

#include "runtime/drivers/packformat.h"

#include <algorithm>
#include <cstring>

static_assert(Q_BYTE_ORDER == Q_LITTLE_ENDIAN, "numbers are copied as their own bytes");

namespace {

/** Its own copy of an argument list. Value and pointer have their true C types,
 *  whose sizes differ between the panel and a PC. */
class VariadicArguments : public PackArguments {
public:
    explicit VariadicArguments(va_list arguments) : m_arguments() {
        va_copy(m_arguments, arguments);
    }
    ~VariadicArguments() override { va_end(m_arguments); }

    quint32 nextValue() override { return va_arg(m_arguments, unsigned int); }
    void* nextPointer() override { return va_arg(m_arguments, void*); }

private:
    Q_DISABLE_COPY(VariadicArguments)

    va_list m_arguments;
};

void copyGroups(void* to, const void* from, const PackField& field) {
    char* target = static_cast<char*>(to);
    const char* source = static_cast<const char*>(from);
    if (!field.reversed) {
        std::memcpy(target, source, size_t(field.size()));
        return;
    }
    for (int start = 0; start < field.size(); start += field.group)
        std::reverse_copy(source + start, source + start + field.group, target + start);
}

void packField(char* to, const PackField& field, PackArguments& arguments) {
    switch (field.kind) {
    case PackField::Value: {
        const quint32 value = arguments.nextValue();
        copyGroups(to, &value, field);
        break;
    }
    case PackField::Block:
        copyGroups(to, arguments.nextPointer(), field);
        break;
    case PackField::Zeros:
        std::memset(to, 0, size_t(field.size()));
        break;
    case PackField::Skip:
        break;
    }
}

/** Bytes of an array's image, or -1 for a format that no array can have. */
int arrayImageSize(const char* format) {
    PackFormat fields(format);
    while (fields.next()) {
        const PackField::Kind kind = fields.field().kind;
        if (fields.field().counted && (kind == PackField::Zeros || kind == PackField::Skip))
            return -1;
    }
    return fields.error() == PackFormat::NoError ? fields.size() : -1;
}

} // namespace

int packFields(void* buffer, const char* format, PackArguments& arguments) {
    PackFormat fields(format);
    while (fields.next())
        packField(static_cast<char*>(buffer) + fields.field().offset, fields.field(), arguments);
    if (fields.error() == PackFormat::NoError)
        return fields.size();
    return fields.error() == PackFormat::BadLetter ? 0 : -1;
}

int unpackFields(const void* buffer, const char* format, PackArguments& arguments) {
    PackFormat fields(format);
    while (fields.next()) {
        const PackField& field = fields.field();
        if (field.kind == PackField::Value || field.kind == PackField::Block)
            copyGroups(arguments.nextPointer(), static_cast<const char*>(buffer) + field.offset,
                       field);
    }
    return fields.error() == PackFormat::NoError ? fields.size() : -1;
}

int VDataPack(void* buffer, const char* format, va_list arguments) {
    VariadicArguments list(arguments);
    return packFields(buffer, format, list);
}

QByteArray VByteArrayPack(const char* format, va_list arguments) {
    const int size = arrayImageSize(format);
    if (size <= 0)
        return QByteArray();
    QByteArray image(size, '\0');
    VDataPack(image.data(), format, arguments);
    return image;
}

int VDataUnpack(const void* buffer, const char* format, va_list arguments) {
    VariadicArguments list(arguments);
    return unpackFields(buffer, format, list);
}

int DataPack(void* buffer, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int size = VDataPack(buffer, format, arguments);
    va_end(arguments);
    return size;
}

QByteArray ByteArrayPack(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const QByteArray image = VByteArrayPack(format, arguments);
    va_end(arguments);
    return image;
}

int DataUnpack(const void* buffer, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int size = VDataUnpack(buffer, format, arguments);
    va_end(arguments);
    return size;
}
