#ifndef HOST_TRANSFER_PRIVATESTICK_H
#define HOST_TRANSFER_PRIVATESTICK_H

#include <QString>

namespace host {

/** Makes the folder @p directory the USB stick of this process: from now on it is
 *  mounted where the storage monitor of a PC looks for sticks, for this process
 *  and those that it starts. Nothing outside of it is changed; all ends with it.
 *  Works for root and, through a user name space of one's own, for everybody
 *  whom the kernel lets. Returns false with the reason in @p problem.
 *
 *  Call it before any thread starts: the kernel refuses it later, and a thread
 *  that runs already would not see the stick. */
bool mountPrivateStick(const QString& directory, QString& problem);

} // namespace host

#endif
