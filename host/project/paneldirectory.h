#ifndef HOST_PROJECT_PANELDIRECTORY_H
#define HOST_PROJECT_PANELDIRECTORY_H

#include "host/project/project.h"
#include "host/project/projectreader.h"

namespace host {

/** A folder that a panel can run: the database, and the project file that it was
 *  built from. */

/** Reads @p source_directory/panel.toml and builds the panel directory @p target
 *  from it. A target that existed is as it was when something is wrong with the
 *  project; the errors are as those of readProjectFile(). */
Result<void, QStringList> buildPanelDirectory(const QString& source_directory,
                                              const QString& target);

/** True for a folder that buildPanelDirectory has made. */
bool isPanelDirectory(const QString& directory);

/** From now on the driver takes @p directory for the application's own. It looks
 *  once, at its first access. GUI thread. */
void setPanelDirectory(const QString& directory);

/** Writes a commented sample project to @p directory/panel.toml; refuses to
 *  overwrite one. */
Result<void> writeSampleProject(const QString& directory);

} // namespace host

#endif
