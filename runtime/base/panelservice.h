#ifndef RUNTIME_BASE_PANELSERVICE_H
#define RUNTIME_BASE_PANELSERVICE_H

/** At a panel service's class: default visibility, so that the plug-in and a
 *  host which carries the same service share one instance of it. */
#define PANEL_SERVICE __attribute__((visibility("default")))

#endif
