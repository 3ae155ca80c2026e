#ifndef HOST_PROJECT_PANELDIRECTORY_H
#define HOST_PROJECT_PANELDIRECTORY_H

#include "host/project/project.h"
#include "host/project/projectreader.h"

namespace host {

/** A folder that a panel can run: the database, and the project file that it was
 *  built from. */

/** Reads @p source_directory/panel.toml and builds the panel directory @p target
 *  from it. Returns what is wrong; a target that existed is then as it was. */
QStringList buildPanelDirectory(const QString& source_directory, const QString& target);

/** True for a folder that buildPanelDirectory has made. */
bool isPanelDirectory(const QString& directory);

/** From now on the driver takes @p directory for the application's own. It looks
 *  once, at its first access. GUI thread. */
void setPanelDirectory(const QString& directory);

/** Writes a commented sample project to @p directory/panel.toml; refuses to
 *  overwrite one. Returns false with the reason in @p problem. */
bool writeSampleProject(const QString& directory, QString& problem);

} // namespace host

#endif
