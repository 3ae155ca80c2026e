#ifndef RUNTIME_DRIVERS_POLLING_PLUGINPIN_H
#define RUNTIME_DRIVERS_POLLING_PLUGINPIN_H

/** Keeps the shared object that holds this code in memory to the end of the
 *  process, however often its host unloads it. For code whose threads outlive
 *  their owner. Without effect in a program that the driver is linked into. Any
 *  thread. */
void keepPluginLoaded();

#endif
