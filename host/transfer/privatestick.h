#ifndef HOST_TRANSFER_PRIVATESTICK_H
#define HOST_TRANSFER_PRIVATESTICK_H

#include "common/result.h"

#include <QString>

namespace host {

/** Makes the folder @p directory the USB stick of this process: from now on it is
 *  mounted where the storage monitor of a PC looks for sticks, for this process
 *  and those that it starts. Nothing outside of it is changed; all ends with it.
 *  Works for root and, through a user name space of one's own, for everybody
 *  whom the kernel lets.
 *
 *  Call it before any thread starts: the kernel refuses it later, and a thread
 *  that runs already would not see the stick. */
Result<void> mountPrivateStick(const QString& directory);

} // namespace host

#endif
