#ifndef TESTS_UNIT_PANEL_RECORDINGFRAM_H
#define TESTS_UNIT_PANEL_RECORDINGFRAM_H

#include "runtime/panel/framdevice.h"

#include <QByteArray>
#include <QStringList>

/** A FRAM chip of 204 bytes in memory that writes down every call and can fail. */
class RecordingFram : public FramDevice {
public:
    static const int Descriptor = 7;

    int open(const QByteArray& path, int flags) override;
    int ioctl(int fd, unsigned long request, int argument) override;
    ssize_t pwrite(int fd, const void* buffer, size_t length, off_t offset) override;
    ssize_t pread(int fd, void* buffer, size_t length, off_t offset) override;
    int close(int fd) override;

    /** Offsets of the writes so far, in order. */
    QStringList writtenOffsets() const { return m_offsets; }

    QByteArray image = QByteArray(204, '\xEE');
    QStringList calls;           // such as "pwrite 7 2@4"
    int descriptor = Descriptor; // what open answers
    ssize_t short_by = 0;        // bytes missing from each transfer

private:
    QStringList m_offsets;
};

#endif
