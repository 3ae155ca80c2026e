// The plug-in's entry points. The host may take the one root object through
// Qt's loader, or make drivers of its own with CreateDriver.
#include "runtime/drivers/dmc50v3/dmc50v3.h"

PANEL_EXPORT_PLUGIN(dmc50v3, DriverDMC50v3)

/** A new driver; the caller owns it. */
extern "C" Q_DECL_EXPORT DriverInterface* CreateDriver() {
    return new DriverDMC50v3;
}
