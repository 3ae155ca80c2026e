#include "host/project/tagtype.h"

namespace host {

namespace {

struct KnownType {
    const char* name;
    CommunicatorCommand::DataType data_type;
    int bits;
    TagType::Shown shown;
};

const KnownType KnownTypes[] = {
    {"bit", CommunicatorCommand::Bit, 1, TagType::Shown::Unsigned},
    {"byte", CommunicatorCommand::Byte, 8, TagType::Shown::Unsigned},
    {"word", CommunicatorCommand::Word, 16, TagType::Shown::Unsigned},
    {"int16", CommunicatorCommand::Word, 16, TagType::Shown::Signed},
    {"dword", CommunicatorCommand::DoubleWord, 32, TagType::Shown::Unsigned},
    {"int32", CommunicatorCommand::DoubleWord, 32, TagType::Shown::Signed},
    {"float", CommunicatorCommand::DoubleWord, 32, TagType::Shown::Float},
};

} // namespace

std::optional<TagType> tagTypeByName(const QString& name) {
    for (const KnownType& known : KnownTypes) {
        if (name == QLatin1String(known.name))
            return TagType{name, known.data_type, known.bits, known.shown};
    }
    return std::nullopt;
}

QStringList tagTypeNames() {
    QStringList names;
    for (const KnownType& known : KnownTypes)
        names.append(QLatin1String(known.name));
    return names;
}

} // namespace host
