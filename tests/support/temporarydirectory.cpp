#include "tests/support/temporarydirectory.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include <stdlib.h>

TemporaryDirectory::TemporaryDirectory() {
    // No "-" before the random part: a blank program file's path may hold no "-1".
    std::string name = (std::filesystem::temp_directory_path() / "dmc50-test_XXXXXX").string();
    EXPECT_NE(mkdtemp(&name[0]), nullptr) << "cannot make " << name;
    m_path = QString::fromLocal8Bit(name.c_str());
}

TemporaryDirectory::~TemporaryDirectory() {
    remove();
}

void TemporaryDirectory::remove() const {
    std::error_code ignored; // a test may have taken it away
    std::filesystem::remove_all(m_path.toLocal8Bit().constData(), ignored);
}

QString TemporaryDirectory::filePath(const QString& name) const {
    return m_path + QLatin1Char('/') + name;
}

void TemporaryDirectory::write(const QString& name, const QByteArray& content) const {
    QFile file(filePath(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly)) << file.errorString().toStdString();
    EXPECT_EQ(file.write(content), content.size());
}

void TemporaryDirectory::makeDirectory(const QString& name) const {
    EXPECT_TRUE(QDir(m_path).mkdir(name));
}

QByteArray TemporaryDirectory::read(const QString& name) const {
    QFile file(filePath(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << file.errorString().toStdString();
    return file.readAll();
}

bool TemporaryDirectory::contains(const QString& name) const {
    return QFileInfo(filePath(name)).exists();
}
