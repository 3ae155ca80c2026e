#include "simulator/memoryfile.h"

#include <QFile>
#include <QSaveFile>

namespace simulator {

namespace {

QString withoutComment(const QByteArray& line) {
    return QString::fromUtf8(line).section(QLatin1Char('#'), 0, 0).simplified();
}

/** Reads line @p number of a file. */
Result<MemoryEntry> parseEntry(const QString& line, int number) {
    const QStringList words = line.split(QLatin1Char(' '));
    if (words.size() != 2)
        return Failure(
            QString::fromLatin1("\"%1\" is not ADDRESS VALUE, such as 0x1000 850").arg(line));
    const std::optional<StationAddress> address = parseStationAddress(words.at(0));
    if (!address)
        return Failure(QString::fromLatin1("\"%1\" is no address; it must be like 4096, 0x1000 or "
                                           "2-0x1000 for station 2")
                           .arg(words.at(0)));
    const std::optional<quint32> value = parseNumber(words.at(1));
    if (!value)
        return Failure(QString::fromLatin1("\"%1\" is no value; it must be a 32-bit number in "
                                           "decimal or, after 0x, in hexadecimal")
                           .arg(words.at(1)));
    return MemoryEntry{*address, *value, number};
}

} // namespace

Result<std::vector<MemoryEntry>> loadMemoryFile(const QString& file_name) {
    QFile file(file_name);
    if (!file.open(QIODevice::ReadOnly))
        return Failure(QString::fromLatin1("%1: %2").arg(file_name, file.errorString()));
    std::vector<MemoryEntry> entries;
    for (int number = 1; !file.atEnd(); ++number) {
        const QString line = withoutComment(file.readLine());
        if (line.isEmpty())
            continue;
        const Result<MemoryEntry> entry = parseEntry(line, number);
        if (!entry)
            return Failure(
                QString::fromLatin1("%1:%2: %3").arg(file_name).arg(number).arg(entry.error()));
        entries.push_back(*entry);
    }
    return entries;
}

Result<void> saveMemoryFile(const QString& file_name,
                            const std::map<quint8, std::map<quint32, quint32>>& stations) {
    QSaveFile file(file_name);
    if (file.open(QIODevice::WriteOnly)) {
        for (const auto& [station, memory] : stations) {
            for (const auto& [address, value] : memory)
                file.write(QString::fromLatin1("%1-%2 %3\n")
                               .arg(station)
                               .arg(hexText(address))
                               .arg(value)
                               .toLatin1());
        }
        if (file.commit())
            return {};
    }
    return Failure(QString::fromLatin1("%1: %2").arg(file_name, file.errorString()));
}

} // namespace simulator
