#include "tests/support/fakemount.h"

#include <QFile>

#include <gtest/gtest.h>

FakeMount::FakeMount() : m_previous_path(qgetenv("PATH")) {
    setTable(QByteArray());
    const QString program = m_directory.filePath(QString::fromLatin1("mount"));
    const QString table = m_directory.filePath(QString::fromLatin1("table"));
    m_directory.write(QString::fromLatin1("mount"),
                      "#!/bin/sh\nexec cat " + table.toLocal8Bit() + "\n");
    QFile::setPermissions(program, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qputenv("PATH", m_directory.path().toLocal8Bit() + ":" + m_previous_path);
}

FakeMount::~FakeMount() {
    qputenv("PATH", m_previous_path);
}

void FakeMount::setTable(const QByteArray& table) {
    m_directory.write(QString::fromLatin1("table"), table);
}

void FakeMount::setRecordedTable(const char* file_name) {
    setTable(storageRecording(file_name));
}

void FakeMount::remove() {
    qputenv("PATH", QByteArray()); // an empty path holds no program at all
}

QByteArray storageRecording(const char* file_name) {
    QFile file(QString::fromLatin1(TEST_DATA_DIR "/storage/") + QString::fromLatin1(file_name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << file_name;
    return file.readAll();
}
