#include "host/session/driverplugin.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLibrary>
#include <QObject>

namespace host {

Result<std::unique_ptr<DriverPlugin>> DriverPlugin::load(const QString& path) {
    if (!QFile::exists(path))
        return Failure(QString::fromLatin1("%1: no such file").arg(path));
    // Qt's loader looks for a relative path in Qt's own folders.
    std::unique_ptr<DriverPlugin> plugin(new DriverPlugin(QFileInfo(path).absoluteFilePath()));
    if (!plugin->m_loader.load())
        return Failure(QString::fromLatin1("%1: %2").arg(path, plugin->m_loader.errorString()));
    if (!qobject_cast<DriverInterface*>(plugin->m_loader.instance()))
        return Failure(QString::fromLatin1("%1: its root object is not a driver (%2)")
                           .arg(path, QLatin1String(qobject_interface_iid<DriverInterface*>())));
    plugin->m_create =
        reinterpret_cast<CreateFunction>(QLibrary::resolve(plugin->path(), "CreateDriver"));
    if (!plugin->m_create)
        return Failure(QString::fromLatin1("%1: it has no CreateDriver").arg(path));
    return plugin;
}

std::unique_ptr<DriverInterface> DriverPlugin::takeRootDriver() {
    return std::unique_ptr<DriverInterface>(qobject_cast<DriverInterface*>(m_loader.instance()));
}

std::unique_ptr<DriverInterface> DriverPlugin::createDriver() {
    return std::unique_ptr<DriverInterface>(m_create());
}

QString programDirectory() {
    return QFileInfo(QFile::symLinkTarget(QStringLiteral("/proc/self/exe"))).path();
}

QStringList driverPluginPlaces(const QString& program_directory) {
    const QDir program(program_directory);
    const QString name = QStringLiteral("libdmc50v3.so");
    return {program.absoluteFilePath(name),
            QDir::cleanPath(
                program.absoluteFilePath(QStringLiteral("../../runtime/drivers/dmc50v3/") + name)),
            QDir::cleanPath(program.absoluteFilePath(QStringLiteral("../lib/") + name))};
}

QString findDriverPlugin(const QString& program_directory) {
    for (const QString& place : driverPluginPlaces(program_directory)) {
        if (QFile::exists(place))
            return place;
    }
    return QString();
}

} // namespace host
