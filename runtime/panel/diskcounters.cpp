#include "runtime/panel/diskcounters.h"

#include <QRegExp>

#include <cstdio>

QByteArray diskName(const QByteArray& line) {
    char name[15] = {};
    std::sscanf(line.constData(), "%*s %*s %12s", name);
    return QByteArray(name);
}

bool isPartitionNode(const QString& node) {
    return QRegExp(QString::fromLatin1("/dev/sd[a-z][1-4]")).exactMatch(node) ||
           QRegExp(QString::fromLatin1("/dev/mmcblk[0-9]p[1-4]")).exactMatch(node);
}

bool readDiskCounters(const QByteArray& line, bool partition, quint64* sum) {
    const char* const format =
        partition ? "%*s %*s %*s %*s %*s %llu %llu" : "%*s %*s %*s %*s %*s %llu %*s %llu";
    unsigned long long first = 0;
    unsigned long long second = 0;
    if (std::sscanf(line.constData(), format, &first, &second) != 2)
        return false;
    *sum = first + second;
    return true;
}
