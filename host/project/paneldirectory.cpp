#include "host/project/paneldirectory.h"

#include "host/project/databasewriter.h"
#include "host/project/replacefile.h"
#include "runtime/interfaces/projectfiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QVariant>

namespace host {

namespace {

Result<void> writeFile(const QByteArray& content, const QString& path) {
    const QString unfinished = path + QLatin1String(".new");
    QFile file(unfinished);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() ||
        !file.flush()) {
        const Failure failure(QString::fromLatin1("%1: %2").arg(path, file.errorString()));
        file.remove();
        return failure;
    }
    file.close();
    return replaceFile(unfinished, path);
}

} // namespace

Result<void, QStringList> buildPanelDirectory(const QString& source_directory,
                                              const QString& target) {
    const QString source = QDir(source_directory).filePath(QLatin1String(ProjectFile));
    QFile file(source);
    if (!file.open(QIODevice::ReadOnly))
        return tl::make_unexpected(
            QStringList(QString::fromLatin1("%1: %2").arg(source, file.errorString())));
    const QByteArray text = file.readAll();
    const ProjectReading project = readProjectText(text, source);
    if (!project)
        return tl::make_unexpected(project.error());
    const QString copy = QDir(target).filePath(QLatin1String(ProjectFile));
    return writeDatabase(*project, target)
        .and_then([&] { return writeFile(text, copy); })
        .map_error([](const QString& problem) { return QStringList(problem); });
}

bool isPanelDirectory(const QString& directory) {
    return QFile::exists(projectDatabasePath(directory));
}

void setPanelDirectory(const QString& directory) {
    // The plug-in asks for this property before it asks where the program is.
    qApp->setProperty(ApplicationDirProperty, QDir(directory).absolutePath());
}

Result<void> writeSampleProject(const QString& directory) {
    const QString path = QDir(directory).filePath(QLatin1String(ProjectFile));
    if (QFile::exists(path))
        return Failure(QString::fromLatin1("%1 exists already").arg(path));
    if (!QDir().mkpath(directory))
        return Failure(QString::fromLatin1("%1: the folder cannot be made").arg(directory));
    QFile sample(QStringLiteral(":/host/sample/panel.toml"));
    if (!sample.open(QIODevice::ReadOnly))
        return Failure(sample.errorString());
    return writeFile(sample.readAll(), path);
}

} // namespace host
