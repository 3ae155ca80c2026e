#include "runtime/drivers/dmc50v3/transfer/programslots.h"

#include "runtime/drivers/dmc50v3/transfer/programtable.h"

void ProgramSlots::addTags(const QStringList& addresses) {
    m_rcp_data_command_addr_list += addresses;
    m_rcp_data_command_addr_list.removeDuplicates();
}

bool ProgramSlots::hasTag(const QString& address) const {
    return m_rcp_data_command_addr_list.contains(address) ||
           m_rcp_data_command_addr_list.contains(address.toUpper());
}

void ProgramSlots::list() {
    if (!m_read_write_command_list.isEmpty())
        return;
    for (int slot = ProgramTable::FirstSlotAddress; slot <= ProgramTable::LastSlotAddress;
         slot += ProgramTable::SlotDistance) {
        const QString address = ProgramTable::slotTagAddress(slot);
        m_read_write_command_list.append(CommunicatorCommand(
            address, CommunicatorCommand::DoubleWord, ProgramTable::ProgramDoubleWords));
        if (!hasTag(address))
            m_unregistered_addr_list.append(address);
    }
    m_rcp_data_command_addr_list.clear();
}
