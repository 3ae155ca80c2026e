#include "tests/e2e/stick.h"

#include <QDir>
#include <QFile>
#include <QTextCodec>

#include <gtest/gtest.h>

QStringList Stick::names() const {
    return QDir(path()).entryList(QDir::Files, QDir::Name);
}

QList<QStringList> Stick::table(const QString& name) const {
    QFile program_file(file(name));
    EXPECT_TRUE(program_file.open(QIODevice::ReadOnly)) << qPrintable(name);
    const QString content = QTextCodec::codecForName("UTF-16")->toUnicode(program_file.readAll());
    QList<QStringList> rows;
    for (const QString& line : content.split('\n', Qt::SkipEmptyParts))
        rows.append(line.split('\t'));
    return rows;
}

void Stick::write(const QString& name, const QList<QStringList>& rows) const {
    QString content;
    for (const QStringList& row : rows)
        content += row.join('\t') + '\n';
    QFile program_file(file(name));
    EXPECT_TRUE(program_file.open(QIODevice::WriteOnly)) << qPrintable(name);
    program_file.write("\xff\xfe");
    for (const QChar character : content) {
        program_file.putChar(char(character.cell()));
        program_file.putChar(char(character.row()));
    }
}

QList<QStringList> Stick::blank(int count) {
    QStringList titles;
    for (int i = 0; i < 25; ++i)
        titles += QString("title %1").arg(i);
    QList<QStringList> rows = {titles};
    for (int number = 1; number <= count; ++number) {
        QStringList row = {QString("程序%1").arg(number)};
        while (row.size() < 25)
            row += "0";
        rows += row;
    }
    return rows;
}

QString Stick::text(const QString& name) const {
    QFile log(file(name));
    EXPECT_TRUE(log.open(QIODevice::ReadOnly)) << qPrintable(name);
    return QString::fromUtf8(log.readAll());
}
