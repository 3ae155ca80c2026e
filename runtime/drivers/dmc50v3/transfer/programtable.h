#ifndef RUNTIME_DRIVERS_DMC50V3_TRANSFER_PROGRAMTABLE_H
#define RUNTIME_DRIVERS_DMC50V3_TRANSFER_PROGRAMTABLE_H

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

class NarrowCodecScope;

/** The controller's programs (recipes) as rows of text. Values and functions
 *  only: no file, no controller, any thread. */
namespace ProgramTable {

enum {
    MaxPrograms = 32,          // program slots of a controller
    ProgramDoubleWords = 24,   // values of one program
    ProgramBytes = 96,         // the same in the driver's little-endian image
    RowFields = 25,            // a label and the values
    FirstSlotAddress = 0x1000, // double-word address of program 1
    LastSlotAddress = 0x13E0,  // of program 32
    SlotDistance = 0x20,       // double words from one program to the next
    TemplateProgramId = -1     // asks for a blank file instead of a read
};

/** The name of the codec in which the header and the row labels are kept. */
extern const char* const HeaderCodecName;

/** The 25 column titles. @p codec must be a scope of HeaderCodecName. */
QStringList headerRow(const NarrowCodecScope& codec);

/** Program @p number (1-based): its label and its 24 values as unsigned decimal
 *  numbers. @p image holds exactly ProgramBytes bytes. */
QStringList programRow(const NarrowCodecScope& codec, int number, const QByteArray& image);

/** The label of program @p number and 24 times "0". */
QStringList templateRow(const NarrowCodecScope& codec, int number);

/** Rows on their way to the controller. */
struct Encoded {
    QList<QByteArray> images; // one per row, ProgramBytes long; complete without errors only
    QStringList errors;       // one text per bad field, ended by a line feed
};

/** Checks the first @p count of @p rows (header taken off, label in field 0) and
 *  encodes them. All of them are checked, also after an error. Bits 16 to 23 of
 *  every value become 0: the controller's programs have no use for them and the
 *  panel has always sent them so. A row has at least RowFields fields. */
Encoded encodeRows(const QList<QStringList>& rows, int count);

/** Tag address of the slot at @p slot_address: "NA" and lower-case hexadecimal. */
QString slotTagAddress(int slot_address);

} // namespace ProgramTable

#endif
