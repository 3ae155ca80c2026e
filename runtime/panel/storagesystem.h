#ifndef RUNTIME_PANEL_STORAGESYSTEM_H
#define RUNTIME_PANEL_STORAGESYSTEM_H

#include <QByteArray>
#include <QString>

#include <sys/statvfs.h>

/** The system calls of the storage monitor, so that tests can give it recorded
 *  mount tables and keep it from unmounting the developer's disks. Any thread. */
class StorageSystem {
public:
    virtual ~StorageSystem() {}

    /** system(): runs a shell command line and waits for its end. */
    virtual void runShell(const QByteArray& command_line);

    /** Runs a program without arguments and reads all that it prints into
     *  @p output. False, with an empty output, when it has not started within
     *  @p timeout_msecs, or not ended within as long again. */
    virtual bool readProgram(const QString& program, int timeout_msecs, QByteArray& output);

    virtual void unmount(const QByteArray& directory);
    virtual bool exists(const QByteArray& directory);

    /** Measures a file system. On failure @p info is all zero. */
    virtual bool measure(const QByteArray& directory, struct statvfs& info);

    /** The machine's own calls; lives for ever. */
    static StorageSystem& real();
};

#endif
