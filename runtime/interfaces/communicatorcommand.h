#ifndef RUNTIME_INTERFACES_COMMUNICATORCOMMAND_H
#define RUNTIME_INTERFACES_COMMUNICATORCOMMAND_H

#include <QString>
#include <QtGlobal>

// The host's layout has no virtual destructor; adding one would move its slots.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

/** One tag access as the host asks for it. A value type whose fields, and whose
 *  two virtual operations, stand in the host's order. */
class CommunicatorCommand {
public:
    enum DataType {
        Bit = 0,
        Byte = 1,
        Word = 2,       // 16 bits
        DoubleWord = 3, // 32 bits
        QuadWord = 4,   // 64 bits
        Block = 5,      // bytes
        BitBlock = 6
    };

    CommunicatorCommand() : m_reserved(0), m_data_type(Bit), m_count(0) {}
    CommunicatorCommand(const QString& address, int data_type, int count)
        : m_reserved(0), m_data_type(data_type), m_count(count), m_address(address) {}

    /** Bytes that the command's data takes; at least 1 for bit commands. */
    virtual int getDataSize() const;

    /** "address_type_count": equal exactly for equal accesses. */
    virtual QString stringKey() const;

    int dataType() const { return m_data_type; }
    int count() const { return m_count; }
    const QString& address() const { return m_address; }

private:
    qint32 m_reserved; // the host's; not used here
    int m_data_type;   // a DataType; the host may send other numbers
    int m_count;       // elements of that type
    QString m_address; // tag address text
};

#pragma GCC diagnostic pop

bool isBitCommand(const CommunicatorCommand& command);
bool isByteCommand(const CommunicatorCommand& command);
bool isWordCommand(const CommunicatorCommand& command);
bool isDoubleWordCommand(const CommunicatorCommand& command);
bool isBlockCommand(const CommunicatorCommand& command);

#endif
