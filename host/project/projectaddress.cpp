#include "host/project/projectaddress.h"

#include "host/project/limits.h"
#include "host/project/spelling.h"

#include <QRegularExpression>

namespace host {

namespace {

constexpr int PageShift = 20; // a PA group stands in bits 20 and up

const char Examples[] = "write PA0011000 (three digits of group, then the offset), NA2016, or "
                        "2-PA0011000 for station 2";

const char* const SpecialTexts[] = {
    "INITDRV0",   "LOWLATENCY",   "WRITE_QUE_SIZE0", "VVT_ENABLE0",   "VVT_ENABLE1",  "VVT_ERROR0",
    "VVT_ERROR1", "VVT_PROG_ID0", "VVT_PROG_COUNT0", "VVT_PROGRESS0", "VVT_PROGRESS1"};

AddressKind kindOf(const QString& special) {
    if (special.startsWith(QLatin1String("LOWLATENCY")))
        return AddressKind::LowLatency;
    if (special.startsWith(QLatin1String("INITDRV")))
        return AddressKind::InitDriver;
    return special.startsWith(QLatin1String("VVT_")) ? AddressKind::Transfer
                                                     : AddressKind::WriteQueueSize;
}

QStringList specialTexts() {
    QStringList texts;
    for (const char* text : SpecialTexts)
        texts.append(QLatin1String(text));
    return texts;
}

/** Null digits are no station. */
Result<std::optional<int>> parseStation(const QString& digits) {
    if (digits.isNull())
        return std::nullopt;
    const uint station = digits.toUInt();
    if (!StationRange.holds(station))
        return Failure(
            QString::fromLatin1("station %1 does not exist; stations are 1 to 255").arg(digits));
    return int(station);
}

/** Null digits are no bit. */
Result<std::optional<int>> parseBit(const QString& digits) {
    if (digits.isNull())
        return std::nullopt;
    bool is_number = false;
    const uint bit = digits.toUInt(&is_number);
    if (!is_number || bit > uint(LargestBit))
        return Failure(
            QString::fromLatin1("'.%1' is not a bit; write .0 to .%2").arg(digits).arg(LargestBit));
    return int(bit);
}

/** @p page and @p offset are hexadecimal digits; their sum must fit 32 bits. */
Result<quint32> parseDword(const QString& page, const QString& offset) {
    bool fits = false;
    const quint64 low = offset.toULongLong(&fits, 16);
    const quint64 sum = (page.toULongLong(nullptr, 16) << PageShift) + low;
    if (!fits || low > 0xffffffffu || sum > 0xffffffffu)
        return Failure(QStringLiteral("the address is larger than 32 bits"));
    return quint32(sum);
}

/** Why @p text has none of the forms. */
QString explain(const QString& text) {
    static const QRegularExpression form(QStringLiteral("^(?:\\d+-)?(PA|NA)(.*?)(?:\\.\\d*)?$"),
                                         QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression not_hex(QStringLiteral("[^0-9a-f]"),
                                            QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = form.match(text);
    const QString wrong = not_hex.match(match.captured(2)).captured();
    if (!wrong.isEmpty()) {
        const QString hint = wrong.compare(QLatin1String("O"), Qt::CaseInsensitive) == 0
                                 ? QStringLiteral("; did you mean the digit 0?")
                                 : QString();
        return QString::fromLatin1("'%1' in '%2' is not a hexadecimal digit%3")
            .arg(wrong, text, hint);
    }
    const QString near = nearestSpelling(text, specialTexts());
    const QString hint = near.isEmpty() ? QLatin1String(Examples)
                                        : QString::fromLatin1("did you mean '%1'?").arg(near);
    return QString::fromLatin1("'%1' is not an address; %2").arg(text, hint);
}

Result<ProjectAddress> parseSpecial(const QString& text) {
    static const QRegularExpression form(QStringLiteral("^(?:(\\d+)-)?(\\w+)$"));
    const QRegularExpressionMatch match = form.match(text.toUpper());
    ProjectAddress address;
    address.text = match.captured(2);
    if (!match.hasMatch() || !specialTexts().contains(address.text))
        return Failure(explain(text));
    address.kind = kindOf(address.text);
    if (!match.captured(1).isNull() && address.kind != AddressKind::LowLatency)
        return Failure(
            QString::fromLatin1("'%1' takes no station; write %2").arg(text, address.text));
    const auto station = parseStation(match.captured(1));
    if (!station)
        return Failure(station.error());
    address.station = *station;
    return address;
}

} // namespace

QString ProjectAddress::accessText() const {
    return bit ? QString::fromLatin1("%1.%2").arg(text).arg(*bit) : text;
}

Result<ProjectAddress> parseProjectAddress(const QString& text) {
    static const QRegularExpression form(
        QStringLiteral("^(?:(\\d+)-)?((?:PA([\\da-f]{3})|NA)([\\da-f]+))(?:\\.(\\d*))?$"),
        QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch())
        return parseSpecial(text);
    const auto station = parseStation(match.captured(1));
    if (!station)
        return Failure(station.error());
    const Result<quint32> dword = parseDword(match.captured(3), match.captured(4));
    if (!dword)
        return Failure(dword.error());
    const auto bit = parseBit(match.captured(5));
    if (!bit)
        return Failure(bit.error());
    return ProjectAddress{AddressKind::Data, match.captured(2).toUpper(), *station, *dword, *bit};
}

} // namespace host
