#ifndef TESTS_UNIT_PANEL_RECORDINGSTORAGE_H
#define TESTS_UNIT_PANEL_RECORDINGSTORAGE_H

#include "runtime/panel/storagesystem.h"

#include <QMap>
#include <QString>
#include <QStringList>

/** Storage without disks: shell commands really run, but nothing is unmounted,
 *  every directory exists until it is said to have vanished, and file systems
 *  have the size they are given. */
class RecordingStorage : public StorageSystem {
public:
    void runShell(const QByteArray& command_line) override {
        commands << QString::fromLocal8Bit(command_line);
        StorageSystem::runShell(command_line);
    }
    bool readProgram(const QString& program, int timeout_msecs, QByteArray& output) override {
        programs << program + QString::fromLatin1(" within %1 ms").arg(timeout_msecs);
        return StorageSystem::readProgram(program, timeout_msecs, output);
    }
    void unmount(const QByteArray& directory) override {
        unmounted << QString::fromLatin1(directory);
    }
    bool exists(const QByteArray& directory) override {
        return !vanished.contains(QString::fromLocal8Bit(directory));
    }
    bool measure(const QByteArray& directory, struct statvfs& info) override {
        const QString name = QString::fromLocal8Bit(directory);
        info = file_systems.value(name);
        return file_systems.contains(name);
    }

    QStringList commands;
    QStringList programs;
    QStringList unmounted;
    QStringList vanished;
    QMap<QString, struct statvfs> file_systems;
};

/** A file system of @p blocks blocks of 4096 bytes, half of them free, a quarter
 *  of them free for everybody. */
inline struct statvfs fileSystemOf(quint64 blocks) {
    struct statvfs info = {};
    info.f_bsize = 4096;
    info.f_frsize = 512;
    info.f_blocks = blocks;
    info.f_bfree = blocks / 2;
    info.f_bavail = blocks / 4;
    return info;
}

#endif
