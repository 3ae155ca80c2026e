#ifndef TESTS_SUPPORT_GOLDENPROGRAMS_H
#define TESTS_SUPPORT_GOLDENPROGRAMS_H

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

/** The double words of programs 1 to 3 as tests/data/recipes/PROG_7.txt lists
 *  them, in the driver's little-endian image, 96 bytes each. */
QList<QByteArray> goldenProgramImages();

/** A file of tests/data/recipes. */
QByteArray goldenFile(const QString& name);

/** The rows of such a file, header first. */
QList<QStringList> goldenRows(const QString& name);

/** Little-endian image of @p values. */
QByteArray doubleWordImage(const QList<quint32>& values);

#endif
