#ifndef HOST_TRANSFER_RECIPEFILES_H
#define HOST_TRANSFER_RECIPEFILES_H

#include <QStringList>

#include <utility>

namespace host {

/** The files of program transfers in a stick's folder, by the names that the
 *  driver gives them. */
class RecipeFiles {
public:
    RecipeFiles(const QString& directory, int program_id)
        : m_directory(directory), m_program_id(program_id) {}

    /** What a pull writes. */
    QString pulled() const;

    QString templateFile() const;

    /** Names, without folder, of the files that a push may take; sorted. */
    QStringList pushable() const;

    /** Of a failed pull, or of a failed push. */
    QString errorLog(bool of_push) const;

    QString path(const QString& name) const;

private:
    const QString m_directory;
    const int m_program_id;
};

/** A file as it was, to see later whether it has been written since. */
class FileMark {
public:
    explicit FileMark(const QString& path);

    bool hasChanged() const;

private:
    struct State {
        quint64 inode = 0;
        qint64 size = -1; // -1: there is none
        qint64 seconds = 0;
        qint64 nanoseconds = 0;
    };

    static State stateOf(const QString& path);

    const QString m_path;
    const State m_state;
};

/** A folder as it was, to see later whether the same file system is still there. */
class FolderMark {
public:
    explicit FolderMark(const QString& path);

    bool holds() const;

private:
    using Identity = std::pair<quint64, quint64>; // device and inode

    static Identity identityOf(const QString& path);

    const QString m_path;
    const Identity m_identity;
};

/** The lines of an error log. */
QStringList logLines(const QString& path);

} // namespace host

#endif
