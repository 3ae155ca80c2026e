#ifndef TESTS_SUPPORT_TEMPORARYDIRECTORY_H
#define TESTS_SUPPORT_TEMPORARYDIRECTORY_H

#include <QByteArray>
#include <QString>

/** A fresh directory below the system's temporary one, removed with all that is
 *  in it at the end. */
class TemporaryDirectory {
public:
    TemporaryDirectory();
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    QString path() const { return m_path; }

    /** Path of @p name inside. */
    QString filePath(const QString& name) const;

    /** Makes or replaces the file @p name. */
    void write(const QString& name, const QByteArray& content) const;

    void makeDirectory(const QString& name) const;

    /** The file's bytes; a missing file fails the test. */
    QByteArray read(const QString& name) const;

    /** Takes the directory away now, as a pulled stick does. */
    void remove() const;

    bool contains(const QString& name) const;

private:
    QString m_path;
};

#endif
