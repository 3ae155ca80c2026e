#include "runtime/drivers/dmc50v3/transfer/transferenvironment.h"

#include "runtime/base/clock.h"
#include "runtime/panel/kdevice.h"

#include <QTimer>

#include <unistd.h>

namespace {

class PanelTransferEnvironment : public TransferEnvironment {
public:
    Clock& clock() override { return Clock::system(); }

    void callLater(int msecs, QObject* receiver, const char* slot) override {
        QTimer::singleShot(msecs, receiver, slot);
    }

    QString usbMountPath() override { return KDevice::getInstance()->getMount(DEVICE_USB); }

    void syncStorage() override { sync(); }
};

} // namespace

TransferEnvironment& TransferEnvironment::panel() {
    static PanelTransferEnvironment* const environment = new PanelTransferEnvironment;
    return *environment; // never deleted: a transfer may outlive main()
}
