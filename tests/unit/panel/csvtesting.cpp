#include "tests/unit/panel/csvtesting.h"

#include "runtime/base/connectchecked.h"

#include <QCoreApplication>
#include <QSettings>
#include <QTextStream>

#include <gtest/gtest.h>

ScratchSettings::ScratchSettings() : m_organisation(QCoreApplication::organizationName()) {
    QCoreApplication::setOrganizationName(QLatin1String("dmc50-tests"));
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_directory.path());
}

ScratchSettings::~ScratchSettings() {
    QCoreApplication::setOrganizationName(m_organisation);
}

QString ScratchSettings::defaultDir() const {
    return QSettings().value(QLatin1String("default_dir")).toString();
}

void ScratchSettings::setDefaultDir(const QString& directory) {
    QSettings().setValue(QLatin1String("default_dir"), directory);
}

bool WorkerLoader::loadText(const QString& text) {
    QString source = text;
    QTextStream stream(&source, QIODevice::ReadOnly);
    errors.clear();
    warnings.clear();
    loadFile(stream, errors, warnings);
    return errors.isEmpty();
}

ProgressRecorder::ProgressRecorder(const KCSVLoader& loader) {
    connectChecked(&loader, SIGNAL(updateStatus(QString, QVariant)), this,
                   SLOT(note(QString, QVariant)), Qt::DirectConnection);
}

void ProgressRecorder::note(QString description, QVariant value) {
    EXPECT_EQ(int(value.type()), int(QVariant::Int));
    notes.append(description + QLatin1Char('=') + value.toString());
}

QString text(const char* utf8) {
    return QString::fromUtf8(utf8);
}

QStringList texts(std::initializer_list<const char*> list) {
    QStringList result;
    for (const char* item : list)
        result.append(text(item));
    return result;
}

QList<QStringList> table(std::initializer_list<QStringList> rows) {
    QList<QStringList> result;
    for (const QStringList& row : rows)
        result.append(row);
    return result;
}

QByteArray utf16(const QString& text) {
    QByteArray bytes("\xFF\xFE");
    for (const QChar character : text) {
        bytes.append(char(character.cell()));
        bytes.append(char(character.row()));
    }
    return bytes;
}

std::string readable(const QList<QStringList>& rows) {
    std::string result;
    for (const QStringList& row : rows) {
        for (const QString& field : row) {
            result += '[';
            for (const QChar character : field) {
                const ushort unit = character.unicode();
                if (unit >= 0x20 && unit < 0x7F)
                    result += char(unit);
                else
                    result += "\\" + QString::number(unit, 16).toStdString() + ".";
            }
            result += ']';
        }
        result += '\n';
    }
    return result;
}
