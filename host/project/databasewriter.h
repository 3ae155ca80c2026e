#ifndef HOST_PROJECT_DATABASEWRITER_H
#define HOST_PROJECT_DATABASEWRITER_H

#include "common/result.h"
#include "host/project/project.h"

namespace host {

/** Writes the project's database, which the driver reads, into the panel
 *  directory @p panel_directory, making folders as needed. The old database is
 *  replaced in one step when the new one is complete and on the disk, and stays
 *  as it is otherwise. */
Result<void> writeDatabase(const Project& project, const QString& panel_directory);

} // namespace host

#endif
