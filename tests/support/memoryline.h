#ifndef TESTS_SUPPORT_MEMORYLINE_H
#define TESTS_SUPPORT_MEMORYLINE_H

#include "runtime/drivers/polling/commerror.h"
#include "runtime/drivers/polling/controllerline.h"

#include <functional>
#include <string>
#include <vector>

/** A line to controllers in memory, without a protocol: address A of station S
 *  holds valueAt(S, A). It logs what is asked of it and fails when told to. One
 *  thread. */
class MemoryLine : public ControllerLine {
public:
    typedef std::vector<std::string> Log;

    explicit MemoryLine(CommError& error) : m_error(error) {}

    static quint32 valueAt(quint8 station, quint32 address) { return station * 1000000u + address; }

    void pause() override {
        m_log.push_back("pause");
        if (m_on_pause)
            m_on_pause();
    }

    bool read(quint8 station, const quint32* addresses, int count, quint32* values) override {
        if (!request("read", station, addresses[0], count))
            return false;
        for (int i = 0; i < count; ++i)
            values[i] = valueAt(station, addresses[i]);
        return true;
    }

    bool write(quint8 station, const std::vector<AddrArg>& pairs) override {
        return request("write", station, pairs.at(0).address, int(pairs.size()));
    }

    int maxReadAddresses() const override { return 50; }
    int maxWritePairs() const override { return 25; }

    /** "pause", or "read 1:10 x3" for three items of station 1 from address 10 on. */
    Log takeLog() {
        Log log;
        log.swap(m_log);
        return log;
    }

    /** The next so many requests fail. */
    int m_failures = 0;
    /** Called during each pause, and during each request before its outcome. */
    std::function<void()> m_on_pause;
    std::function<void()> m_on_request;

private:
    bool request(const char* kind, quint8 station, quint32 first, int count) {
        m_log.push_back(std::string(kind) + ' ' + std::to_string(station) + ':' +
                        std::to_string(first) + " x" + std::to_string(count));
        if (m_on_request)
            m_on_request();
        if (m_failures == 0)
            return true;
        --m_failures;
        m_error.set(QString::fromLatin1("failed"));
        return false;
    }

    CommError& m_error;
    Log m_log;
};

#endif
