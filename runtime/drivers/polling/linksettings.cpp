#include "runtime/drivers/polling/linksettings.h"

#include "runtime/interfaces/abstractdeviceinterface.h"

#include <algorithm>

namespace {

const quint32 MinFrameIntervalMsecs = 10;
const int MinTimeoutMsecs = 3000;

} // namespace

LinkSettings::LinkSettings(AbstractDeviceInterface& port)
    : frame_interval_ms(std::max<quint32>(port.frameInterval(), MinFrameIntervalMsecs))
    , timeout_ms(std::max(port.responseTimeout(), MinTimeoutMsecs))
    , retries(port.retryCount()) {}
