#ifndef RUNTIME_PANEL_DISKCOUNTERS_H
#define RUNTIME_PANEL_DISKCOUNTERS_H

#include <QByteArray>
#include <QString>

/** What one line of /proc/diskstats says about a device. Pure functions. */

/** The kernel's name of the device, at most 12 characters, such as sda1; empty
 *  when the line has none. */
QByteArray diskName(const QByteArray& line);

/** Whether @p node is a partition, such as /dev/sda1 or /dev/mmcblk1p1. */
bool isPartitionNode(const QString& node);

/** Adds up the two counters that move with every transfer: fields 6 and 7 of a
 *  partition, 6 and 8 of a whole disk. False when the line lacks them. */
bool readDiskCounters(const QByteArray& line, bool partition, quint64* sum);

#endif
