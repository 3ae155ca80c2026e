#ifndef TESTS_PLUGIN_LOADEDPLUGIN_H
#define TESTS_PLUGIN_LOADEDPLUGIN_H

#include "tests/plugin/hostcontract.h"

/** The built plug-in, loaded as the host loads it; stays loaded. */
void* loadPlugin();

/** The plug-in's function @p name, or null. */
void* pluginSymbol(const char* name);

/** What the entry points return. @{ */
QObject* pluginInstance();
host::Driver* createDriver();
/** @} */

#endif
