#include "host/project/paneldirectory.h"

#include "host/project/databasewriter.h"
#include "host/project/replacefile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QVariant>

namespace host {

namespace {

bool writeFile(const QByteArray& content, const QString& path, QString& problem) {
    const QString unfinished = path + QLatin1String(".new");
    QFile file(unfinished);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() ||
        !file.flush()) {
        problem = QString::fromLatin1("%1: %2").arg(path, file.errorString());
        file.remove();
        return false;
    }
    file.close();
    return replaceFile(unfinished, path, problem);
}

} // namespace

QStringList buildPanelDirectory(const QString& source_directory, const QString& target) {
    const QString source = QDir(source_directory).filePath(QLatin1String(PROJECT_FILE));
    QFile file(source);
    if (!file.open(QIODevice::ReadOnly))
        return {QString::fromLatin1("%1: %2").arg(source, file.errorString())};
    const QByteArray text = file.readAll();
    const ProjectReading reading = readProjectText(text, source);
    if (!reading.project)
        return reading.errors;
    QString problem;
    const QString copy = QDir(target).filePath(QLatin1String(PROJECT_FILE));
    if (!writeDatabase(*reading.project, target, problem) || !writeFile(text, copy, problem))
        return {problem};
    return {};
}

bool isPanelDirectory(const QString& directory) {
    return QFile::exists(QDir(directory).filePath(QLatin1String(DATABASE_FILE)));
}

void setPanelDirectory(const QString& directory) {
    // The plug-in asks for this property before it asks where the program is.
    qApp->setProperty("PanelApplicationDir", QDir(directory).absolutePath());
}

bool writeSampleProject(const QString& directory, QString& problem) {
    const QString path = QDir(directory).filePath(QLatin1String(PROJECT_FILE));
    if (QFile::exists(path)) {
        problem = QString::fromLatin1("%1 exists already").arg(path);
        return false;
    }
    if (!QDir().mkpath(directory)) {
        problem = QString::fromLatin1("%1: the folder cannot be made").arg(directory);
        return false;
    }
    QFile sample(QStringLiteral(":/host/sample/panel.toml"));
    if (!sample.open(QIODevice::ReadOnly)) {
        problem = sample.errorString();
        return false;
    }
    return writeFile(sample.readAll(), path, problem);
}

} // namespace host
