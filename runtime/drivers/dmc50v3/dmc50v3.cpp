// The driver's identity, error state and sessions.
#include "runtime/drivers/dmc50v3/dmc50v3.h"

#include "runtime/drivers/dmc50v3/dmc50_cpl.h"
#include "runtime/drivers/dmc50v3/dmc50_polling_thread.h"
#include "runtime/interfaces/devicesetting.h"
#include "runtime/interfaces/driversetting.h"

namespace {

const QString VERSION_STRING = QString::fromLatin1("1.0.0");

const int BlockBytes = 1024;

} // namespace

DriverDMC50v3::DriverDMC50v3(Clock& clock)
    : m_clock(clock)
    , m_has_error(false)
    , m_debug_mode(false)
    , m_db_opened(false)
    , m_db_loaded(false)
    , m_default_station_id(1)
    , m_connection_name(QString::number(panelRandomNumber()))
    , m_csv_im_exporter(nullptr)
    , m_program_reading(false) {
    m_comm_addresses.reserve(std::size_t(CPLMaxReadAddresses));
    m_data_indexes.reserve(std::size_t(CPLMaxReadAddresses));
}

DriverDMC50v3::~DriverDMC50v3() {
    stopThread();
}

int DriverDMC50v3::totalSize() {
    return BlockBytes;
}

bool DriverDMC50v3::initialize(AbstractDeviceInterface*) {
    return true;
}

bool DriverDMC50v3::validation(const QString&) {
    return false;
}

QString DriverDMC50v3::name() {
    return QString::fromLatin1("DMC50 v3");
}

QString DriverDMC50v3::vender() {
    return QString::fromLatin1("Yamatake");
}

QString DriverDMC50v3::getVersionNumber() {
    return VERSION_STRING;
}

DeviceSetting* DriverDMC50v3::getDefaultSerialDeviceSetting() {
    return new DeviceSetting(DEVICE_RS485, QString::fromLatin1("COM2"), 38400, 8,
                             DeviceSetting::OneStopBit, DeviceSetting::EvenParity);
}

DriverSetting* DriverDMC50v3::getDefaultDriverSetting() {
    return new DriverSetting(9000, 1, 1, 20);
}

QString DriverDMC50v3::getStringBasedDefaultDriverSetting() {
    return QString::fromLatin1("RS485,38400,EVEN,8,1");
}

int DriverDMC50v3::supportedCommunicationFlags() {
    return DEVICE_RS232 | DEVICE_RS422 | DEVICE_RS485;
}

void DriverDMC50v3::setDebugMode(bool on) {
    m_debug_mode = on;
}

int DriverDMC50v3::getBlockAccessSize() {
    return BlockBytes;
}

int DriverDMC50v3::getBitBlockAccessSize() {
    return BlockBytes;
}

QObject* DriverDMC50v3::getThisObject() {
    return this;
}

bool DriverDMC50v3::isSupportSessionCommand() {
    return true;
}

void DriverDMC50v3::setSessionCommand(QList<CommunicatorCommand> commands) {
    if (commands.isEmpty())
        return;
    if (m_thread)
        m_thread->setSessionCommand(commands);
    else
        m_session_commands = commands;
}

void DriverDMC50v3::clearSessionCommand() {
    if (m_thread)
        m_thread->clearSessionCommand();
}

void DriverDMC50v3::setCommError(const QString& text) {
    m_has_error = true;
    m_error_description = text;
}

void DriverDMC50v3::clearError() {
    m_has_error = false;
}

bool DriverDMC50v3::hasError() {
    return (m_thread && m_thread->hasError()) || m_has_error;
}

QString DriverDMC50v3::getLastError() {
    if (m_thread && m_thread->hasError())
        return m_thread->getLastError();
    return m_error_description;
}

void DriverDMC50v3::addStrToFrontOfErrorDescription(const QString& text) {
    if (!m_error_description.contains(QLatin1Char(':')))
        m_error_description.prepend(text);
}
