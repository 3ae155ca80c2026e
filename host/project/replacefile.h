#ifndef HOST_PROJECT_REPLACEFILE_H
#define HOST_PROJECT_REPLACEFILE_H

#include "common/result.h"

#include <QString>

namespace host {

/** Puts the finished file @p written in the place of @p target, in the same
 *  folder: after a power failure there is the old file or the new one, whole.
 *  On failure @p written is gone, and @p target untouched. */
Result<void> replaceFile(const QString& written, const QString& target);

} // namespace host

#endif
