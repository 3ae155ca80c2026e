#include "runtime/drivers/padding.h"

#include "runtime/drivers/counts.h"
#include "runtime/interfaces/communicatorcommand.h"

namespace {

QByteArray paddedToMultipleOf(int unit, const QByteArray& data) {
    return data.leftJustified((data.size() + unit - 1) / unit * unit, '\0');
}

} // namespace

int GetSafeDataLen(const CommunicatorCommand& command) {
    switch (command.dataType()) {
    case CommunicatorCommand::Bit:
    case CommunicatorCommand::BitBlock:
        return NumOfBitsToNumOfBytes(0, quint32(qMax(0, command.count())));
    case CommunicatorCommand::Byte:
    case CommunicatorCommand::Word:
    case CommunicatorCommand::DoubleWord:
    case CommunicatorCommand::QuadWord:
    case CommunicatorCommand::Block:
        return command.CommunicatorCommand::getDataSize();
    default:
        return 0;
    }
}

QByteArray ToSafeData(const CommunicatorCommand& command, const QByteArray& data) {
    return data.leftJustified(qMax(0, GetSafeDataLen(command)), '\0', true);
}

QByteArray To16bitsData(const QByteArray& data) {
    return paddedToMultipleOf(2, data);
}

QByteArray To32bitsData(const QByteArray& data) {
    return paddedToMultipleOf(4, data);
}

QByteArray To64bitsData(const QByteArray& data) {
    const int beyond = data.size() % 8;
    return beyond == 0 ? data : data.leftJustified(data.size() - beyond + 4, '\0');
}
