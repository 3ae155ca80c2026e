#include "runtime/drivers/dmc50v3/transfer/programtable.h"

#include "runtime/base/fatal.h"
#include "runtime/base/qtcompat.h"

#include <QtEndian>

namespace ProgramTable {

namespace {

// Big5, with every byte outside ASCII as three octal digits.
const char* const ColumnTitles[] = {
    " ",
    "\263]\251w\267\305\253\327",           // 設定溫度
    "\263]\251w\256\311\266\241(\256\311)", // 設定時間(時)
    "\263]\251w\256\311\266\241(\244\300)", // 設定時間(分)
    "\263]\251w\256\311\266\241(\254\355)", // 設定時間(秒)
    "G. SOAK +",
    "G. SOAK  -",
    "PID \270s\262\325", // PID 群組
    "Empty",
    "EVENT1 \276\367\261\361\254\246ON",         // EVENT1 機械泵ON
    "EVENT2 \262\312\251\342\273\326",           // EVENT2 粗抽閥
    "EVENT3 \276|\246\241ON",                    // EVENT3 魯式ON
    "EVENT4 \263\306\300\243",                   // EVENT4 備壓
    "EVENT5 \264\341\256\360\244\300\300\243",   // EVENT5 氮氣分壓
    "EVENT6 \245[\274\366",                      // EVENT6 加熱
    "EVENT7 \262V\246X\256\360\244\300\300\243", // EVENT7 混合氣分壓
    "EVENT8 \264\372\272|",                      // EVENT8 測漏
    "EVENT9 \257\337\275\304\264\253\256\360",   // EVENT9 脈衝換氣
    "EVENT10",
    "EVENT11",
    "EVENT12",
    "DI1",
    "DI2",
    "DI3 \265{\246\241\265\262\247\364",   // DI3 程式結束
    "DI4 \257u\252\305\245\274\271F HOLD", // DI4 真空未達 HOLD
};
static_assert(sizeof(ColumnTitles) / sizeof(*ColumnTitles) == RowFields, "a title for each field");
static_assert(RowFields == 1 + ProgramDoubleWords, "a label and the values");
static_assert(ProgramBytes == 4 * ProgramDoubleWords, "double words");
static_assert(LastSlotAddress == FirstSlotAddress + (MaxPrograms - 1) * SlotDistance,
              "as many slots as programs");

const char* const RowLabel = "\265{\247\307%1"; // 程序%1

QStringList labelledRow(const NarrowCodecScope& codec, int number) {
    return QStringList(codec.text(RowLabel).arg(number));
}

void appendImage(QByteArray& image, quint32 value) {
    image.append(char(value & 0xFF));
    image.append(char(value >> 8 & 0xFF));
    image.append(char(0));
    image.append(char(value >> 24 & 0xFF));
}

QString invalidValueText(const QString& field, int row, int column) {
    return QString::fromLatin1(
               "The value [%1] at row %2 and column %3 is invalid, please check it.\n")
        .arg(field, QString::number(row), QString::number(column));
}

} // namespace

const char* const HeaderCodecName = "Big5";

QStringList headerRow(const NarrowCodecScope& codec) {
    QStringList row;
    for (const char* title : ColumnTitles)
        row.append(codec.text(title));
    return row;
}

QStringList programRow(const NarrowCodecScope& codec, int number, const QByteArray& image) {
    FATAL_CHECK(image.size() == ProgramBytes, "image.size() == ProgramBytes");
    QStringList row = labelledRow(codec, number);
    const uchar* bytes = reinterpret_cast<const uchar*>(image.constData());
    for (int i = 0; i < ProgramDoubleWords; ++i)
        row.append(QString::number(qFromLittleEndian<quint32>(bytes + 4 * i)));
    return row;
}

QStringList templateRow(const NarrowCodecScope& codec, int number) {
    QStringList row = labelledRow(codec, number);
    for (int i = 0; i < ProgramDoubleWords; ++i)
        row.append(QString::fromLatin1("0"));
    return row;
}

Encoded encodeRows(const QList<QStringList>& rows, int count) {
    Encoded encoded;
    for (int r = 0; r < rows.size() && r < count; ++r) {
        QByteArray image;
        for (int column = 1; column <= ProgramDoubleWords; ++column) {
            const QString field = rows.at(r).value(column);
            bool valid = false;
            const quint32 value = field.toUInt(&valid, 10);
            if (!valid)
                encoded.errors.append(invalidValueText(field, r, column));
            appendImage(image, value);
        }
        if (encoded.errors.isEmpty())
            encoded.images.append(image);
    }
    return encoded;
}

QString slotTagAddress(int slot_address) {
    return QString::fromLatin1("NA%1").arg(slot_address, 0, 16);
}

} // namespace ProgramTable
