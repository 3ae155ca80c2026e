#ifndef RUNTIME_DRIVERS_DMC50V3_TRANSFER_PROGRAMFILES_H
#define RUNTIME_DRIVERS_DMC50V3_TRANSFER_PROGRAMFILES_H

#include "runtime/drivers/dmc50v3/transfer/transferdirection.h"

#include <QString>
#include <QStringList>

/** Names of the files in the root directory of the USB stick. Any thread. */
namespace ProgramFiles {

/** "PROG_%1.txt" in @p directory. */
QString programFile(const QString& directory, int program_id);

/** @p program_file with every "-1" replaced by "template", in the names of its
 *  directories too. */
QString templateFile(const QString& program_file);

/** Absolute paths of the files "PROG_%1.txt" and "PROG_%1_*.txt" in @p directory,
 *  sorted by name. */
QStringList matchingProgramFiles(const QString& directory, int program_id);

/** "%1_PROG_%2_ERROR.txt" in @p directory: "WRITE" for a transfer to the
 *  controller, otherwise "READ". */
QString errorLogFile(const QString& directory, TransferDirection direction, int program_id);

} // namespace ProgramFiles

#endif
