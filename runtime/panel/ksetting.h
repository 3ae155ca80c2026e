#ifndef RUNTIME_PANEL_KSETTING_H
#define RUNTIME_PANEL_KSETTING_H

#include "runtime/base/panelservice.h"
#include "runtime/panel/framdevice.h"

#include <QObject>

#include <bitset>
#include <memory>

class QTimer;

/** The panel's small preferences: 100 numbered 16-bit values. Every change goes
 *  to the save file at once and, one second after the last change, to the FRAM
 *  chip with a checksum. The save file is the source at the next start.
 *
 *  Thread: the GUI thread; it needs an event loop for the delayed FRAM update. */
class PANEL_SERVICE KSetting : public QObject {
    Q_OBJECT

public:
    static const int ValueCount = 100;

    /** Loads the save file. @p fram must outlive the object. */
    explicit KSetting(FramDevice& fram = FramDevice::system());
    ~KSetting() override;

    /** The process's settings, made by the first call. */
    static KSetting* getInstance();

    /** Deletes the process's settings, for the end of the program: getInstance()
     *  must not be called afterwards. */
    static void drop();

    /** Value @p field, 0 to 65535; -1 when @p field is not 0 to 99. */
    int getSettingValue(int field);

    /** Sets value @p field to the low 16 bits of @p val and writes the save
     *  file. False for a field outside 0 to 99, and when the file cannot be
     *  written; the value then stays set in memory. */
    bool setSettingValue(int field, int val);

    /** Brings the FRAM up to date. False when its checksum was not written. */
    bool saveSetting();

    /** saveSetting() now instead of when the second is over. */
    void manualSave();

    /** Raw access to @p length bytes at @p offset of the FRAM. False, with a line
     *  on standard output, when the device is missing or the transfer short. */
    bool writeBuffer2FRAM(unsigned offset, unsigned length, void* buffer);
    bool readFRAM2Buffer(unsigned offset, unsigned length, void* buffer);

public slots:
    /** Writes the values that the FRAM lacks, then the checksum. */
    bool writeFram();

private slots:
    /** The sum of the values modulo 65536. */
    quint16 calCheckSum();
    void autoSave();

protected:
    bool valid; // whether values may be used

private:
    Q_DISABLE_COPY(KSetting)

    bool loadSetting();
    bool writeSaveFile();
    bool writeFramWord(unsigned offset, quint16 word);

    FramDevice& m_fram;
    QTimer* saveTimer;                 // child
    std::unique_ptr<quint16[]> values; // ValueCount of them
    quint16 framShadow[ValueCount];    // what the FRAM is believed to hold
    std::bitset<ValueCount> framKnown; // the shadow's entries that were ever written
    quint32 checksum;                  // of the last FRAM update

    static KSetting* m_instance; // lives to the end of the process
};

#endif
