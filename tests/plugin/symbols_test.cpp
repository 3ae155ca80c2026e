// What the plug-in shows to the host's loader and what it wants of the host.
#include "runtime/base/qtcompat.h"
#include "tests/plugin/dynamicsymbols.h"
#include "tests/plugin/loadedplugin.h"

#include <gtest/gtest.h>

#include <dlfcn.h>

#include <set>
#include <string>

namespace {

std::set<std::string> names(const std::vector<DynamicSymbol>& symbols) {
    std::set<std::string> names;
    for (const DynamicSymbol& symbol : symbols)
        names.insert(symbol.name);
    return names;
}

/** True for a symbol that only this program, not a library, can provide. */
bool comesFromTheHost(const std::string& name) {
    return dlsym(RTLD_NEXT, name.c_str()) == nullptr;
}

/** Weak hooks that every shared object asks for. */
bool isToolchainHook(const std::string& name) {
    return name == "__gmon_start__" || name.rfind("_ITM_", 0) == 0 ||
           name.rfind("__asan_", 0) == 0 || name.rfind("__ubsan_", 0) == 0 ||
           name.rfind("__tsan_", 0) == 0 || name.rfind("__sanitizer_", 0) == 0;
}

} // namespace

TEST(Symbols, OfTheHostOnlyPlatformIsWanted) {
    ASSERT_NE(loadPlugin(), nullptr);
    std::set<std::string> wanted;
    for (const std::string& name : names(undefinedSymbols(PLUGIN_FILE))) {
        if (comesFromTheHost(name) && !isToolchainHook(name))
            wanted.insert(name);
    }
    const std::set<std::string> platform = {
        "_ZN8Platform11getInstanceEv", "_ZN8Platform8isX86HMIEv",      "_ZN8Platform8BuzzerOnEv",
        "_ZN8Platform11setBuzzerOnEb", "_ZN8Platform11BuzzerAlarmEii", "_ZN8Platform9modelCodeEv"};
    EXPECT_EQ(wanted, platform);
}

TEST(Symbols, OnlyEntryPointsAndPanelServicesAreShown) {
    const std::set<std::string> entry_points = {"CreateDriver", "qt_plugin_instance",
                                                "qt_plugin_query_verification_data",
                                                "qt_plugin_query_metadata"};
    std::set<std::string> shown;
    for (const std::string& name : names(definedSymbols(PLUGIN_FILE))) {
        if (!isOfPanelService(name))
            shown.insert(name);
    }
#if PANEL_QT4
    std::set<std::string> expected = entry_points;
    expected.erase("qt_plugin_query_metadata");
    EXPECT_EQ(shown, expected);
#else
    EXPECT_EQ(shown, entry_points);
#endif
}
