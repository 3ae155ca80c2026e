#include "host/session/drivererror.h"

#include <QRegularExpression>

namespace host {

std::optional<DriverError> readDriverError(const QString& text) {
    if (text.isEmpty())
        return std::nullopt; // what is asked most
    static const QRegularExpression form(
        QStringLiteral("station id#(\\d+)(?: start address ([\\dA-F]{8}))?"));
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    DriverError error;
    error.station = match.captured(1).toInt();
    if (!match.captured(2).isEmpty())
        error.read_from = match.captured(2).toUInt(nullptr, 16);
    return error;
}

} // namespace host
