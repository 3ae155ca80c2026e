// What the plug-in shows to the host's loader and what it wants of the host.
#include "runtime/base/qtcompat.h"
#include "tests/plugin/loadedplugin.h"

#include <QProcess>
#include <QRegExp>
#include <QStringList>

#include <gtest/gtest.h>

#include <dlfcn.h>

#include <set>
#include <string>

namespace {

/** Names in the plug-in's dynamic symbol table, as nm lists them. */
std::set<std::string> symbols(const char* which) {
    QProcess nm;
    nm.start(QString::fromLatin1("nm"), QStringList() << QString::fromLatin1("-D")
                                                      << QString::fromLatin1(which)
                                                      << QString::fromUtf8(PLUGIN_FILE));
    EXPECT_TRUE(nm.waitForFinished());
    std::set<std::string> names;
    const QStringList lines =
        QString::fromLatin1(nm.readAllStandardOutput().trimmed()).split(QLatin1Char('\n'));
    for (int i = 0; i < lines.size(); ++i) {
        const QString name = lines.at(i).section(QLatin1Char(' '), -1);
        names.insert(name.section(QLatin1Char('@'), 0, 0).toStdString());
    }
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

/** What an AddressSanitizer build shows besides: markers of its globals, and the
 *  type information of the Qt class whose objects it checks. */
bool isSanitizersOwn(const std::string& name) {
#ifdef __SANITIZE_ADDRESS__
    return name.rfind("__odr_asan.", 0) == 0 || name == "_ZTI11QObjectData" ||
           name == "_ZTS11QObjectData";
#else
    static_cast<void>(name);
    return false;
#endif
}

} // namespace

TEST(Symbols, OfTheHostOnlyPlatformIsWanted) {
    ASSERT_NE(loadPlugin(), nullptr);
    std::set<std::string> wanted;
    for (const std::string& name : symbols("--undefined-only")) {
        if (comesFromTheHost(name) && !isToolchainHook(name))
            wanted.insert(name);
    }
    const std::set<std::string> platform = {
        "_ZN8Platform11getInstanceEv", "_ZN8Platform8isX86HMIEv",      "_ZN8Platform8BuzzerOnEv",
        "_ZN8Platform11setBuzzerOnEb", "_ZN8Platform11BuzzerAlarmEii", "_ZN8Platform9modelCodeEv"};
    EXPECT_EQ(wanted, platform);
}

TEST(Symbols, OnlyEntryPointsAndPanelServicesAreShown) {
    const QRegExp service(QString::fromLatin1(
        "^_Z.*(KCSV|KBuzzer|KDevice|KSetting|MessageCenter|PlatformInterface|ArmLinuxHmi|"
        "X86LinuxHmi|AbstractBuzzerInterface|FramDevice|PanelPaths|panelPaths).*"));
    const std::set<std::string> entry_points = {"CreateDriver", "qt_plugin_instance",
                                                "qt_plugin_query_verification_data",
                                                "qt_plugin_query_metadata"};
    const std::set<std::string> linker = {"_init", "_fini", "__bss_start", "_edata", "_end"};
    std::set<std::string> shown;
    for (const std::string& name : symbols("--defined-only")) {
        if (linker.count(name) == 0 && !isSanitizersOwn(name) &&
            service.indexIn(QString::fromStdString(name)) < 0)
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
