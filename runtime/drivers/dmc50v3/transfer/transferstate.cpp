#include "runtime/drivers/dmc50v3/transfer/transferstate.h"

#include "runtime/drivers/dmc50v3/transfer/programtable.h"
#include "runtime/drivers/dmc50v3/transfer/transfertags.h"

using TransferTags::isTag;

TransferState::TransferState()
    : writing_enable(false)
    , reading_enable(false)
    , writing_error(false)
    , reading_error(false)
    , writing_progress(0)
    , reading_progress(0)
    , prog_id(0)
    , prog_count(0) {}

/** A number without data is 0, as everywhere in the driver: a write of no bytes is
 *  a write, so it does not leave the number before in force. */
void TransferState::writeTag(const QString& address, const QByteArray& data) {
    const bool is_cleared = !data.isEmpty() && data.at(0) == 0;
    if (isTag(address, "VVT_ERROR0") && is_cleared)
        writing_error = false;
    else if (isTag(address, "VVT_ERROR1") && is_cleared)
        reading_error = false;
    else if (isTag(address, "VVT_PROG_ID0"))
        prog_id = TransferTags::writtenValue(data);
    else if (isTag(address, "VVT_PROG_COUNT0"))
        setProgCount(TransferTags::writtenValue(data));
}

void TransferState::readTag(const QString& address, QByteArray& data) const {
    if (isTag(address, "VVT_ENABLE0"))
        TransferTags::storeFlag(writing_enable, data);
    else if (isTag(address, "VVT_ENABLE1"))
        TransferTags::storeFlag(reading_enable, data);
    else if (isTag(address, "VVT_ERROR0"))
        TransferTags::storeFlag(writing_error, data);
    else if (isTag(address, "VVT_ERROR1"))
        TransferTags::storeFlag(reading_error, data);
    else if (isTag(address, "VVT_PROG_ID0"))
        TransferTags::storeValue(prog_id, data);
    else if (isTag(address, "VVT_PROG_COUNT0"))
        TransferTags::storeValue(prog_count, data);
    else if (isTag(address, "VVT_PROGRESS0"))
        TransferTags::storeValue(writing_progress, data);
    else if (isTag(address, "VVT_PROGRESS1"))
        TransferTags::storeValue(reading_progress, data);
}

void TransferState::setProgCount(int count) {
    if (quint32(count) <= quint32(ProgramTable::MaxPrograms))
        prog_count = count;
}

void TransferState::setError(TransferDirection direction) {
    switch (direction) {
    case TransferDirection::ToController:
        writing_error = true;
        break;
    case TransferDirection::FromController:
        reading_error = true;
        break;
    case TransferDirection::Neither:
        break;
    }
}
