#include "runtime/drivers/dmc50v3/dmc50_cpl.h"

#include "runtime/base/fatal.h"
#include "runtime/drivers/checksums.h"
#include "runtime/drivers/tools.h"

namespace {

const char Stx = 0x02;
const char Etx = 0x03;
const int TrailerLength = 4; // checksum digits, CR, LF

/** Appends to a frame, never beyond the buffer, and sums what it appends. */
class FrameWriter {
public:
    FrameWriter(char* buf, int size) : m_buf(buf), m_size(size), m_length(0), m_sum(0) {}

    void put(char c) {
        if (m_length < m_size - 1)
            m_buf[m_length] = c;
        ++m_length;
        m_sum = quint8(m_sum + quint8(c));
    }

    void text(const char* text) {
        while (*text)
            put(*text++);
    }

    /** @p digits upper-case hexadecimal digits of @p value. */
    void hex(quint32 value, int digits) {
        for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4)
            put("0123456789ABCDEF"[(value >> shift) & 0xF]);
    }

    void header(quint8 station_id, quint8 subaddress, const char* command) {
        put(Stx);
        hex(station_id, 2);
        hex(subaddress, 2);
        text(command);
    }

    /** ETX, the two's complement of the sum so far, CR LF. Returns the length. */
    int finish() {
        put(Etx);
        hex(quint8(-m_sum), 2);
        text("\r\n");
        if (m_size > 0)
            m_buf[m_length < m_size ? m_length : m_size - 1] = '\0';
        return m_length;
    }

private:
    char* m_buf; // the caller's
    int m_size;
    int m_length;
    quint8 m_sum;
};

} // namespace

int CPLPackRNCmd(char* buf, int size, quint8 station_id, quint8 subaddress,
                 const quint32* addresses, uint num_of_addresses) {
    FATAL_CHECK(addresses != nullptr, "addresses != 0");
    FATAL_CHECK(num_of_addresses > 0 && num_of_addresses <= uint(CPLMaxReadAddresses),
                "num_of_addresses > 0 && num_of_addresses <= 50");
    FrameWriter frame(buf, size);
    frame.header(station_id, subaddress, "XRN00LL");
    for (uint i = 0; i < num_of_addresses; ++i)
        frame.hex(addresses[i], CPLDWordDigits);
    return frame.finish();
}

int CPLPackWGCmd(char* buf, int size, quint8 station_id, quint8 subaddress, quint32 start_address,
                 const uchar* dwords, uint num_of_dwords) {
    FATAL_CHECK(dwords != nullptr, "dwords != 0");
    FATAL_CHECK(num_of_dwords > 0 && num_of_dwords <= uint(CPLMaxWriteDWords),
                "num_of_dwords > 0 && num_of_dwords <= 50");
    FrameWriter frame(buf, size);
    frame.header(station_id, subaddress, "XWGLL");
    frame.hex(start_address, CPLDWordDigits);
    for (uint i = 0; i < num_of_dwords; ++i) {
        for (int byte = 3; byte >= 0; --byte)
            frame.hex(dwords[4 * i + uint(byte)], 2);
    }
    return frame.finish();
}

int CPLPackWNCmd(char* buf, int size, quint8 station_id, quint8 subaddress,
                 const AddrArg* addr_args, int num_of_addr_args) {
    FATAL_CHECK(addr_args != nullptr, "addr_args != 0");
    FATAL_CHECK(num_of_addr_args > 0 && num_of_addr_args <= CPLMaxWritePairs,
                "num_of_addr_args > 0 && num_of_addr_args <= 25");
    FrameWriter frame(buf, size);
    frame.header(station_id, subaddress, "XWN00LL");
    for (int i = 0; i < num_of_addr_args; ++i) {
        frame.hex(addr_args[i].address, CPLDWordDigits);
        frame.hex(addr_args[i].value, CPLDWordDigits);
    }
    return frame.finish();
}

bool CPLValidateChecksum(const char* frame, int len) {
    if (len <= TrailerLength)
        return false;
    const int summed = len - TrailerLength;
    const quint32 sum = UInt8CheckSum(frame, summed);
    return ((sum + HexToUInt(frame + summed, 2)) & 0xFF) == 0;
}
