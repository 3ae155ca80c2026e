#include "runtime/interfaces/communicatorcommand.h"

namespace {

/** In 32 bits, wrapping: the host may send any count. */
int times(int count, quint32 bytes) {
    return int(quint32(count) * bytes);
}

} // namespace

int CommunicatorCommand::getDataSize() const {
    switch (m_data_type) {
    case Bit:
        return m_count > 0 ? (m_count - 1) / 8 + 1 : 1;
    case Byte:
    case Block:
        return m_count;
    case Word:
        return times(m_count, 2);
    case DoubleWord:
        return times(m_count, 4);
    case QuadWord:
        return times(m_count, 8);
    default:
        return 1;
    }
}

QString CommunicatorCommand::stringKey() const {
    // One pass: an address that itself holds "%2" must not be filled in again.
    return m_address + QLatin1Char('_') + QString::number(m_data_type) + QLatin1Char('_') +
           QString::number(m_count);
}

bool isBitCommand(const CommunicatorCommand& command) {
    return command.dataType() == CommunicatorCommand::Bit;
}

bool isByteCommand(const CommunicatorCommand& command) {
    return command.dataType() == CommunicatorCommand::Byte;
}

bool isWordCommand(const CommunicatorCommand& command) {
    return command.dataType() == CommunicatorCommand::Word;
}

bool isDoubleWordCommand(const CommunicatorCommand& command) {
    return command.dataType() == CommunicatorCommand::DoubleWord;
}

bool isBlockCommand(const CommunicatorCommand& command) {
    return command.dataType() == CommunicatorCommand::Block;
}
