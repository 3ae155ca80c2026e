#ifndef RUNTIME_PANEL_MOUNTLISTING_H
#define RUNTIME_PANEL_MOUNTLISTING_H

#include <QString>
#include <QStringList>

class StorageSystem;

/** Runs the shell command @p command with its output into the scratch file of
 *  the panel; the output's non-empty lines. Not more than one at a time. */
QStringList mountListing(StorageSystem& system, const QString& command);

/** The parts of a line such as "/dev/sda1 on /run/media/sda1 type vfat (rw)". */
QStringList splitAtBlanks(const QString& line);

/** The parts of @p text between separators, without the empty ones. */
QStringList nonEmptyParts(const QString& text, char separator);

#endif
