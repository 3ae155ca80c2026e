#ifndef RUNTIME_DRIVERS_POLLING_RUNREADER_H
#define RUNTIME_DRIVERS_POLLING_RUNREADER_H

#include <QtGlobal>

#include <vector>

class CommError;
class ControllerLine;
class DWordMap;

/** Reads runs of addresses, each with one request. The polling thread only. */
class RunReader {
public:
    RunReader(ControllerLine& line, CommError& error);

    /** Addresses of the next run when @p left are still to be read. */
    int runLength(int left) const;

    /** One attempt, into @p map. The error is cleared after the values are there:
     *  who waits for its end finds them. */
    bool read(quint8 station_id, const quint32* addresses, int count, DWordMap& map);

private:
    ControllerLine& m_line;
    CommError& m_error;
    std::vector<quint32> m_values; // room for the longest run
};

#endif
