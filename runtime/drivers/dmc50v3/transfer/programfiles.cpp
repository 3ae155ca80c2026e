#include "runtime/drivers/dmc50v3/transfer/programfiles.h"

#include <QDir>

namespace ProgramFiles {

namespace {

QString inDirectory(const QString& directory, const QString& name) {
    return directory + QDir::separator() + name;
}

QString programFileName(int program_id) {
    return QString::fromLatin1("PROG_%1.txt").arg(program_id);
}

} // namespace

QString programFile(const QString& directory, int program_id) {
    return inDirectory(directory, programFileName(program_id));
}

QString templateFile(const QString& program_file) {
    return QString(program_file).replace(QLatin1String("-1"), QLatin1String("template"));
}

QStringList matchingProgramFiles(const QString& directory, int program_id) {
    const QStringList name_filters = QStringList()
                                     << programFileName(program_id)
                                     << QString::fromLatin1("PROG_%1_*.txt").arg(program_id);
    QStringList paths;
    const QFileInfoList files =
        QDir(directory).entryInfoList(name_filters, QDir::Files, QDir::Name);
    for (int i = 0; i < files.size(); ++i)
        paths.append(files.at(i).absoluteFilePath());
    return paths;
}

QString errorLogFile(const QString& directory, TransferDirection direction, int program_id) {
    const bool is_write = direction == TransferDirection::ToController;
    const QString word = QString::fromLatin1(is_write ? "WRITE" : "READ");
    return inDirectory(directory,
                       QString::fromLatin1("%1_PROG_%2_ERROR.txt").arg(word).arg(program_id));
}

} // namespace ProgramFiles
