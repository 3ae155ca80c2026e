#ifndef HOST_SESSION_DRIVERPLUGIN_H
#define HOST_SESSION_DRIVERPLUGIN_H

#include "common/result.h"
#include "runtime/interfaces/driverinterface.h"

#include <QPluginLoader>
#include <QStringList>

#include <memory>

namespace host {

/** A driver's shared object, entered in the two ways that it offers. It stays
 *  loaded to the end of the process, since its panel services do. */
class DriverPlugin {
public:
    /** Never null; an error begins with the path. */
    static Result<std::unique_ptr<DriverPlugin>> load(const QString& path);

    /** The plug-in's one root object, which Qt's loader hands out. Once it has been
     *  deleted a further call makes a new one; while it lives there is only one
     *  owner: do not take it twice. */
    std::unique_ptr<DriverInterface> takeRootDriver();

    /** A new driver from CreateDriver. */
    std::unique_ptr<DriverInterface> createDriver();

    QString path() const { return m_loader.fileName(); }

private:
    using CreateFunction = DriverInterface* (*)();

    explicit DriverPlugin(const QString& path) : m_loader(path) {}

    QPluginLoader m_loader;
    CreateFunction m_create = nullptr; // of the loaded object
};

/** The folder of the running program. In a chroot the kernel names another one once
 *  the process has its own mounts: ask before mountPrivateStick(). */
QString programDirectory();

/** Where the driver's file is looked for: beside the program @p program_directory,
 *  in the build tree that it is part of, in the lib folder of its installation. */
QStringList driverPluginPlaces(const QString& program_directory);

/** The first of those that exists; empty when none does. */
QString findDriverPlugin(const QString& program_directory);

} // namespace host

#endif
