#include "host/session/tagvalue.h"

#include <cmath>
#include <cstring>

namespace host {

namespace {

struct KnownFormat {
    const char* name;
    ValueFormat format;
};

const KnownFormat KnownFormats[] = {{"hex", ValueFormat::Hex},
                                    {"dec", ValueFormat::Dec},
                                    {"bits", ValueFormat::Bits},
                                    {"float", ValueFormat::Float}};

quint32 elementAt(const QByteArray& data, int bits, int index) {
    if (bits == 1)
        return uchar(data[index / 8]) >> (index % 8) & 1u;
    quint32 value = 0;
    const int bytes = bits / 8;
    for (int i = 0; i < bytes; ++i)
        value |= quint32(uchar(data[index * bytes + i])) << (8 * i);
    return value;
}

void putElement(QByteArray& data, int bits, int index, quint32 value) {
    if (bits == 1) {
        data[index / 8] = char(uchar(data[index / 8]) | (value & 1u) << (index % 8));
        return;
    }
    const int bytes = bits / 8;
    for (int i = 0; i < bytes; ++i)
        data[index * bytes + i] = char(value >> (8 * i));
}

double floatOf(quint32 image) {
    float value = 0;
    std::memcpy(&value, &image, sizeof value);
    return double(value);
}

QString floatText(quint32 image) {
    return QString::number(floatOf(image), 'g', 9)
        .replace(QLatin1String("nan"), QLatin1String("NaN"));
}

qint32 signExtended(quint32 value, int bits) {
    return qint32(value << (32 - bits)) >> (32 - bits);
}

double numberOf(const TagType& type, quint32 value) {
    if (type.shown == TagType::Shown::Float)
        return floatOf(value);
    return type.shown == TagType::Shown::Signed ? double(signExtended(value, type.bits))
                                                : double(value);
}

QString formatElement(const TagType& type, quint32 value, ValueFormat format) {
    const bool floating = format == ValueFormat::Float ||
                          (format == ValueFormat::Natural && type.shown == TagType::Shown::Float);
    if (floating && type.bits == 32)
        return floatText(value);
    if (type.bits == 1)
        return QString::number(value);
    if (format == ValueFormat::Hex)
        return QString::fromLatin1("0x%1").arg(value, type.bits / 4, 16, QLatin1Char('0'));
    if (format == ValueFormat::Bits)
        return QString::fromLatin1("0b%1").arg(value, type.bits, 2, QLatin1Char('0'));
    if (type.shown == TagType::Shown::Signed)
        return QString::number(signExtended(value, type.bits));
    return QString::number(value);
}

Result<quint32> parseFloat(const QString& text) {
    bool is_number = false;
    const float value = text.toFloat(&is_number);
    if (!is_number)
        return Failure(
            QString::fromLatin1("'%1' is not a number; write one such as 21.5").arg(text));
    quint32 image = 0;
    std::memcpy(&image, &value, sizeof image);
    return image;
}

/** Prefixes as in C, "0b" included; -2^63 and up. */
qint64 parseInteger(const QString& text, bool& is_number) {
    if (text.startsWith(QLatin1String("0b"), Qt::CaseInsensitive))
        return text.mid(2).toLongLong(&is_number, 2);
    if (text.startsWith(QLatin1String("0x"), Qt::CaseInsensitive))
        return text.mid(2).toLongLong(&is_number, 16);
    return text.toLongLong(&is_number, 10);
}

Result<quint32> parseElement(const TagType& type, const QString& text) {
    if (type.shown == TagType::Shown::Float)
        return parseFloat(text);
    bool is_number = false;
    const qint64 value = parseInteger(text, is_number);
    const qint64 most = (qint64(1) << type.bits) - 1;
    const qint64 least = type.bits == 1 ? 0 : -(qint64(1) << (type.bits - 1));
    if (is_number && value >= least && value <= most)
        return quint32(value) & quint32(most);
    return Failure(QString::fromLatin1("'%1' is not a value of type %2; write a whole number from "
                                       "%3 to %4, also as 0x... or 0b...")
                       .arg(text, type.name)
                       .arg(least)
                       .arg(most));
}

} // namespace

std::optional<ValueFormat> valueFormatByName(const QString& name) {
    for (const KnownFormat& known : KnownFormats) {
        if (name == QLatin1String(known.name))
            return known.format;
    }
    return std::nullopt;
}

QStringList valueFormatNames() {
    QStringList names;
    for (const KnownFormat& known : KnownFormats)
        names.append(QLatin1String(known.name));
    return names;
}

QByteArray tagData(const TagDefinition& tag, const QByteArray& dwords) {
    const int first_bit = tag.address.bit.value_or(0);
    if (tag.type.bits > 1)
        return dwords.left(tag.count * tag.type.bits / 8);
    QByteArray data((tag.count + 7) / 8, '\0');
    for (int i = 0; i < tag.count; ++i)
        putElement(data, 1, i, elementAt(dwords, 1, first_bit + i));
    return data;
}

bool differsByMoreThan(const TagDefinition& tag, const QByteArray& data, const QByteArray& other,
                       double deadband) {
    const int bits = tag.count * tag.type.bits;
    if (data.size() * 8 < bits || other.size() * 8 < bits)
        return true;
    for (int i = 0; i < tag.count; ++i) {
        const double difference = numberOf(tag.type, elementAt(data, tag.type.bits, i)) -
                                  numberOf(tag.type, elementAt(other, tag.type.bits, i));
        if (!(std::abs(difference) <= deadband)) // also when it is no number
            return true;
    }
    return false;
}

QStringList formatElements(const TagDefinition& tag, const QByteArray& data, ValueFormat format) {
    QStringList elements;
    const int there = data.size() * 8 / tag.type.bits;
    for (int i = 0; i < qMin(tag.count, there); ++i)
        elements.append(formatElement(tag.type, elementAt(data, tag.type.bits, i), format));
    return elements;
}

QString formatValue(const TagDefinition& tag, const QByteArray& data, ValueFormat format) {
    const QString separator = tag.type.bits == 1 ? QString() : QStringLiteral(" ");
    return formatElements(tag, data, format).join(separator);
}

Result<QByteArray> parseValue(const TagDefinition& tag, const QString& text) {
    const QStringList elements = text.split(QLatin1Char(','));
    if (elements.size() != tag.count)
        return Failure(QString::fromLatin1("%1 takes %2 values, not %3; separate them by commas")
                           .arg(tag.name)
                           .arg(tag.count)
                           .arg(elements.size()));
    QByteArray data(tag.command().getDataSize(), '\0');
    for (int i = 0; i < elements.size(); ++i) {
        const Result<quint32> value = parseElement(tag.type, elements[i].trimmed());
        if (!value)
            return Failure(value.error());
        putElement(data, tag.type.bits, i, *value);
    }
    return data;
}

} // namespace host
