#ifndef HOST_PROJECT_REPLACEFILE_H
#define HOST_PROJECT_REPLACEFILE_H

#include <QString>

namespace host {

/** Puts the finished file @p written in the place of @p target, in the same
 *  folder: after a power failure there is the old file or the new one, whole.
 *  On failure @p written is gone, @p target untouched, and @p problem says why. */
bool replaceFile(const QString& written, const QString& target, QString& problem);

} // namespace host

#endif
