#include "simulator/numbers.h"

#include <QRegularExpression>

namespace simulator {

namespace {

bool matches(const QString& text, const char* pattern) {
    return QRegularExpression(QRegularExpression::anchoredPattern(QLatin1String(pattern)))
        .match(text)
        .hasMatch();
}

} // namespace

std::optional<quint32> parseNumber(const QString& text) {
    bool is_number = false;
    quint32 number = 0;
    if (matches(text, "0[xX][0-9A-Fa-f]+"))
        number = text.mid(2).toUInt(&is_number, 16);
    else if (matches(text, "[0-9]+"))
        number = text.toUInt(&is_number, 10);
    else if (matches(text, "-[0-9]+"))
        number = quint32(text.toInt(&is_number, 10));
    return is_number ? std::optional<quint32>(number) : std::nullopt;
}

std::optional<quint8> parseStation(const QString& text) {
    const uint number = matches(text, "[0-9]+") ? text.toUInt() : 0;
    return number >= 1 && number <= 255 ? std::optional<quint8>(quint8(number)) : std::nullopt;
}

std::optional<StationAddress> parseStationAddress(const QString& text) {
    StationAddress result;
    const int hyphen = text.indexOf(QLatin1Char('-'));
    if (hyphen >= 0) {
        result.station = parseStation(text.left(hyphen));
        if (!result.station)
            return std::nullopt;
    }
    const QString digits = text.mid(hyphen + 1);
    const std::optional<quint32> address = parseNumber(digits);
    if (!address || digits.startsWith(QLatin1Char('-')))
        return std::nullopt;
    result.address = *address;
    return result;
}

QString hexText(quint32 number) {
    return QString::fromLatin1("0x%1").arg(
        QString::number(number, 16).toUpper().rightJustified(8, QLatin1Char('0')));
}

} // namespace simulator
