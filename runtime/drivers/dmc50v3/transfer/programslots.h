#ifndef RUNTIME_DRIVERS_DMC50V3_TRANSFER_PROGRAMSLOTS_H
#define RUNTIME_DRIVERS_DMC50V3_TRANSFER_PROGRAMSLOTS_H

#include "runtime/interfaces/communicatorcommand.h"

#include <QList>
#include <QStringList>

/** The controller's program slots, and which of them the project has a tag for.
 *  One thread at a time. */
class ProgramSlots {
public:
    /** Adds the project's tag addresses, each once. Before list(). */
    void addTags(const QStringList& addresses);

    /** Lists the slots and compares them with the tags, which are then forgotten.
     *  Once; a further call does nothing. */
    void list();

    /** The commands that read or write a slot, program 1 first. */
    const QList<CommunicatorCommand>& commands() const { return m_read_write_command_list; }

    /** Addresses of the slots without a tag. */
    const QStringList& unregistered() const { return m_unregistered_addr_list; }
    bool isRegistered(const CommunicatorCommand& command) const {
        return !m_unregistered_addr_list.contains(command.address());
    }

private:
    bool hasTag(const QString& address) const;

    QList<CommunicatorCommand> m_read_write_command_list;
    QStringList m_rcp_data_command_addr_list; // until compared
    QStringList m_unregistered_addr_list;
};

#endif
