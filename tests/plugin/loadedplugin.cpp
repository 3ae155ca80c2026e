#include "tests/plugin/loadedplugin.h"

#include <gtest/gtest.h>

#include <dlfcn.h>

void* loadPlugin() {
    static void* const plugin = dlopen(PLUGIN_FILE, RTLD_NOW | RTLD_LOCAL);
    if (!plugin)
        ADD_FAILURE() << dlerror();
    return plugin;
}

void* pluginSymbol(const char* name) {
    return dlsym(loadPlugin(), name);
}

QObject* pluginInstance() {
    return reinterpret_cast<QObject* (*)()>(pluginSymbol("qt_plugin_instance"))();
}

host::Driver* createDriver() {
    return reinterpret_cast<host::Driver* (*)()>(pluginSymbol("CreateDriver"))();
}
