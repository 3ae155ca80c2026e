#include "host/transfer/recipefiles.h"

#include <QDir>
#include <QFile>

#include <sys/stat.h>
#include <tuple>

namespace host {

QString RecipeFiles::path(const QString& name) const {
    return QDir(m_directory).filePath(name);
}

QString RecipeFiles::pulled() const {
    return path(QString::fromLatin1("PROG_%1.txt").arg(m_program_id));
}

QString RecipeFiles::templateFile() const {
    return path(QStringLiteral("PROG_template.txt"));
}

QStringList RecipeFiles::pushable() const {
    return QDir(m_directory)
        .entryList({QString::fromLatin1("PROG_%1.txt").arg(m_program_id),
                    QString::fromLatin1("PROG_%1_*.txt").arg(m_program_id)},
                   QDir::Files, QDir::Name);
}

QString RecipeFiles::errorLog(bool of_push) const {
    return path(QString::fromLatin1("%1_PROG_%2_ERROR.txt")
                    .arg(QLatin1String(of_push ? "WRITE" : "READ"))
                    .arg(m_program_id));
}

FileMark::FileMark(const QString& path) : m_path(path), m_state(stateOf(path)) {}

FileMark::State FileMark::stateOf(const QString& path) {
    struct stat status = {};
    State state;
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return state;
    state.inode = status.st_ino;
    state.size = status.st_size;
    state.seconds = status.st_mtim.tv_sec;
    state.nanoseconds = status.st_mtim.tv_nsec;
    return state;
}

bool FileMark::hasChanged() const {
    const auto values = [](const State& state) {
        return std::make_tuple(state.inode, state.size, state.seconds, state.nanoseconds);
    };
    return values(stateOf(m_path)) != values(m_state);
}

FolderMark::FolderMark(const QString& path) : m_path(path), m_identity(identityOf(path)) {}

FolderMark::Identity FolderMark::identityOf(const QString& path) {
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return {0, 0};
    return {status.st_dev, status.st_ino};
}

bool FolderMark::holds() const {
    const Identity now = identityOf(m_path);
    return now == m_identity && now != Identity(0, 0);
}

QStringList logLines(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QStringList lines = QString::fromLocal8Bit(file.readAll()).split(QLatin1Char('\n'));
    lines.removeAll(QString());
    return lines;
}

} // namespace host
