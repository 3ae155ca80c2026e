#include "runtime/drivers/polling/runreader.h"

#include "runtime/drivers/polling/commerror.h"
#include "runtime/drivers/polling/controllerline.h"
#include "runtime/drivers/polling/dwordmap.h"

#include <algorithm>

RunReader::RunReader(ControllerLine& line, CommError& error)
    : m_line(line), m_error(error), m_values(std::size_t(line.maxReadAddresses())) {}

int RunReader::runLength(int left) const {
    return std::min(left, int(m_values.size()));
}

bool RunReader::read(quint8 station_id, const quint32* addresses, int count, DWordMap& map) {
    m_line.pause();
    if (!m_line.read(station_id, addresses, count, m_values.data()))
        return false;
    map.store(station_id, addresses, m_values.data(), count);
    m_error.clear();
    return true;
}
