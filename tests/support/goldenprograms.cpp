#include "tests/support/goldenprograms.h"

#include <QFile>
#include <QTextCodec>

#include <gtest/gtest.h>

namespace {

QList<quint32> values(const quint32 (&array)[24]) {
    QList<quint32> list;
    for (quint32 value : array)
        list.append(value);
    return list;
}

} // namespace

QByteArray doubleWordImage(const QList<quint32>& values) {
    QByteArray image;
    for (quint32 value : values) {
        for (int shift = 0; shift < 32; shift += 8)
            image.append(char(value >> shift & 0xFF));
    }
    return image;
}

QList<QByteArray> goldenProgramImages() {
    const quint32 firing[24] = {850, 0, 30, 0, 5, 5, 1, 0, 1, 1, 1, 0, 0, 1};
    const quint32 extremes[24] = {4294967295u, 65536,      65535, 70000,  2147483648u, 10,
                                  100,         1000,       10000, 100000, 1000000,     10000000,
                                  100000000,   1000000000, 1,     2,      3,           4,
                                  5,           6,          7,     8,      9,           4278255615u};
    const quint32 zeros[24] = {};
    return QList<QByteArray>() << doubleWordImage(values(firing))
                               << doubleWordImage(values(extremes))
                               << doubleWordImage(values(zeros));
}

QByteArray goldenFile(const QString& name) {
    QFile file(QString::fromLatin1(TEST_DATA_DIR "/recipes/") + name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << file.fileName().toStdString();
    return file.readAll();
}

QList<QStringList> goldenRows(const QString& name) {
    QString text = QTextCodec::codecForName("UTF-16LE")->toUnicode(goldenFile(name).mid(2));
    text.chop(1); // the last line end
    const QStringList lines = text.split(QLatin1Char('\n'));
    QList<QStringList> rows;
    for (int i = 0; i < lines.size(); ++i)
        rows.append(lines.at(i).split(QLatin1Char('\t')));
    return rows;
}
