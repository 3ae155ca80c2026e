#ifndef SIMULATOR_FILEDESCRIPTOR_H
#define SIMULATOR_FILEDESCRIPTOR_H

#include <QByteArray>

namespace simulator {

/** Owns an open file of the kernel and closes it with itself. */
class FileDescriptor {
public:
    explicit FileDescriptor(int descriptor = -1) : m_descriptor(descriptor) {}
    ~FileDescriptor() { reset(); }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;

    int get() const { return m_descriptor; }
    bool isOpen() const { return m_descriptor >= 0; }
    void reset(int descriptor = -1);

private:
    int m_descriptor;
};

/** Waits at most @p timeout_ms for @p descriptor to have bytes or to fail.
 *  Returns the events of poll(), 0 when the time is over. */
short waitForInput(int descriptor, int timeout_ms);

/** What a non-blocking descriptor has, at most 4096 bytes; empty when nothing
 *  or at the end. Sets @p at_end when the other side has gone. */
QByteArray readAvailable(int descriptor, bool& at_end);

/** Writes as much as the kernel takes at once. */
void writeAvailable(int descriptor, const QByteArray& bytes);

} // namespace simulator

#endif
