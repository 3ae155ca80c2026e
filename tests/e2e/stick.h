#ifndef TESTS_E2E_STICK_H
#define TESTS_E2E_STICK_H

#include <QList>
#include <QStringList>
#include <QTemporaryDir>

/** A folder that serves as a USB stick, and the program files on it. */
class Stick {
public:
    QString path() const { return m_directory.path(); }
    QString file(const QString& name) const { return m_directory.filePath(name); }
    QStringList names() const;

    /** The rows of a program file, the titles first. */
    QList<QStringList> table(const QString& name) const;
    void write(const QString& name, const QList<QStringList>& rows) const;

    /** A table of the programs 1 to @p count, all values 0. */
    static QList<QStringList> blank(int count);

    QString text(const QString& name) const; // of an error log

private:
    QTemporaryDir m_directory;
};

#endif
