#ifndef HOST_SESSION_DRIVERERROR_H
#define HOST_SESSION_DRIVERERROR_H

#include <QString>

#include <optional>

namespace host {

/** Which request a driver's error text is about. */
struct DriverError {
    int station = 0;
    std::optional<quint32> read_from; // of a read: its first address; none: of a write
};

/** None when @p text names no station. */
std::optional<DriverError> readDriverError(const QString& text);

} // namespace host

#endif
