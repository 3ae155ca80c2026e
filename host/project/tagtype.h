#ifndef HOST_PROJECT_TAGTYPE_H
#define HOST_PROJECT_TAGTYPE_H

#include "runtime/interfaces/communicatorcommand.h"

#include <QStringList>

#include <optional>

namespace host {

/** How the elements of a tag are stored and shown. */
struct TagType {
    enum class Shown { Unsigned, Signed, Float };

    QString name;
    CommunicatorCommand::DataType data_type = CommunicatorCommand::DoubleWord;
    int bits = 32; // of one element
    Shown shown = Shown::Unsigned;
};

/** "bit", "byte", "word", "int16", "dword", "int32", "float". */
std::optional<TagType> tagTypeByName(const QString& name);
QStringList tagTypeNames();

} // namespace host

#endif
