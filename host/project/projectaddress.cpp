#include "host/project/projectaddress.h"

#include "host/project/spelling.h"

#include <QRegularExpression>

namespace host {

namespace {

constexpr int PAGE_SHIFT = 20; // a PA group stands in bits 20 and up

const char EXAMPLES[] = "write PA0011000 (three digits of group, then the offset), NA2016, or "
                        "2-PA0011000 for station 2";

const char* const SPECIAL_TEXTS[] = {
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
    for (const char* text : SPECIAL_TEXTS)
        texts.append(QLatin1String(text));
    return texts;
}

bool parseStation(const QString& digits, ProjectAddress& address, QString& problem) {
    if (digits.isNull())
        return true;
    const uint station = digits.toUInt();
    if (station < 1 || station > 255) {
        problem =
            QString::fromLatin1("station %1 does not exist; stations are 1 to 255").arg(digits);
        return false;
    }
    address.station = int(station);
    return true;
}

bool parseBit(const QString& digits, ProjectAddress& address, QString& problem) {
    if (digits.isNull())
        return true;
    bool is_number = false;
    const uint bit = digits.toUInt(&is_number);
    if (!is_number || bit > uint(LARGEST_BIT)) {
        problem =
            QString::fromLatin1("'.%1' is not a bit; write .0 to .%2").arg(digits).arg(LARGEST_BIT);
        return false;
    }
    address.bit = int(bit);
    return true;
}

/** @p page and @p offset are hexadecimal digits; their sum must fit 32 bits. */
bool parseDword(const QString& page, const QString& offset, ProjectAddress& address,
                QString& problem) {
    bool fits = false;
    const quint64 low = offset.toULongLong(&fits, 16);
    const quint64 sum = (page.toULongLong(nullptr, 16) << PAGE_SHIFT) + low;
    if (!fits || low > 0xffffffffu || sum > 0xffffffffu) {
        problem = QString::fromLatin1("the address is larger than 32 bits");
        return false;
    }
    address.dword = quint32(sum);
    return true;
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
    const QString hint = near.isEmpty() ? QLatin1String(EXAMPLES)
                                        : QString::fromLatin1("did you mean '%1'?").arg(near);
    return QString::fromLatin1("'%1' is not an address; %2").arg(text, hint);
}

std::optional<ProjectAddress> parseSpecial(const QString& text, QString& problem) {
    static const QRegularExpression form(QStringLiteral("^(?:(\\d+)-)?(\\w+)$"));
    const QRegularExpressionMatch match = form.match(text.toUpper());
    ProjectAddress address;
    address.text = match.captured(2);
    if (!match.hasMatch() || !specialTexts().contains(address.text)) {
        problem = explain(text);
        return std::nullopt;
    }
    address.kind = kindOf(address.text);
    if (!match.captured(1).isNull() && address.kind != AddressKind::LowLatency) {
        problem = QString::fromLatin1("'%1' takes no station; write %2").arg(text, address.text);
        return std::nullopt;
    }
    if (!parseStation(match.captured(1), address, problem))
        return std::nullopt;
    return address;
}

} // namespace

QString ProjectAddress::accessText() const {
    return bit ? QString::fromLatin1("%1.%2").arg(text).arg(*bit) : text;
}

std::optional<ProjectAddress> parseProjectAddress(const QString& text, QString& problem) {
    static const QRegularExpression form(
        QStringLiteral("^(?:(\\d+)-)?((?:PA([\\da-f]{3})|NA)([\\da-f]+))(?:\\.(\\d*))?$"),
        QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch())
        return parseSpecial(text, problem);
    ProjectAddress address;
    address.text = match.captured(2).toUpper();
    if (!parseStation(match.captured(1), address, problem) ||
        !parseDword(match.captured(3), match.captured(4), address, problem) ||
        !parseBit(match.captured(5), address, problem))
        return std::nullopt;
    return address;
}

} // namespace host
