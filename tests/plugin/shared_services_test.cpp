// The program carries the panel services, as the panel's runtime does, and so
// does the plug-in: both must use one of each.
#include "tests/plugin/dynamicsymbols.h"
#include "tests/plugin/servicehost.h"

#include "runtime/panel/kbuzzer.h"
#include "runtime/panel/kdevice.h"
#include "runtime/panel/ksetting.h"

#include <QCoreApplication>
#include <QImage>

#include <algorithm>
#include <iterator>
#include <map>
#include <mutex>
#include <set>

namespace {

class SharedServices : public ServiceHost {};

/** Symbols of the services that a file shows. */
std::vector<DynamicSymbol> services(const char* file) {
    std::vector<DynamicSymbol> found;
    const std::vector<DynamicSymbol> all = definedSymbols(file);
    std::copy_if(all.begin(), all.end(), std::back_inserter(found),
                 [](const DynamicSymbol& symbol) { return isOfPanelService(symbol.name); });
    return found;
}

/** This program's own object or function of that name. */
void* inHost(const std::string& name) {
    void* const symbol = dlsym(RTLD_DEFAULT, name.c_str());
    EXPECT_NE(nullptr, symbol) << name;
    return symbol;
}

typedef std::map<std::string, QByteArray> Bytes; // by the name of the data

/** All data that this program shares with the plug-in. */
Bytes sharedData() {
    Bytes data;
    for (const DynamicSymbol& symbol : services(PLUGIN_FILE)) {
        if (symbol.kind == 'B' || symbol.kind == 'D')
            data[symbol.name] =
                QByteArray(static_cast<const char*>(inHost(symbol.name)), int(symbol.size));
    }
    return data;
}

void expectSharedDataIs(const Bytes& expected) {
    const Bytes data = sharedData();
    for (const auto& datum : expected)
        EXPECT_EQ(datum.second.toHex(), data.at(datum.first).toHex()) << datum.first;
}

QString text(const char* utf8) {
    return QString::fromUtf8(utf8);
}

} // namespace

TEST_F(SharedServices, TheCopiesOfTheCodeAreTwo) {
    EXPECT_NE(&MessageCenter::getInstance,
              inPlugin<MessageCenter*()>("_ZN13MessageCenter11getInstanceEv"));
}

TEST_F(SharedServices, ThePluginFindsTheHostsMessagePanel) {
    EXPECT_EQ(m_panel.get(), inPlugin<MessageCenter*()>("_ZN13MessageCenter11getInstanceEv")());
}

TEST_F(SharedServices, ANoticeFromThePluginShowsInTheHostsPanel) {
    typedef void ShowMessage(MessageCenter*, QString, QString, bool);
    MessageCenter* const panel = inPlugin<MessageCenter*()>("_ZN13MessageCenter11getInstanceEv")();
    inPlugin<ShowMessage>("_ZN13MessageCenter16showMessageAsyncE7QStringS0_b")(
        panel, text("Recipe"), text("已保存"), true);
    EXPECT_TRUE(m_panel->isVisible());
    EXPECT_EQ(text("Recipe\n已保存"), firstEntry());
}

TEST_F(SharedServices, ThePluginFindsTheHostsBuzzer) {
    EXPECT_EQ(KBuzzer::getInstance(), inPlugin<KBuzzer*()>("_ZN7KBuzzer11getInstanceEv")());
}

TEST_F(SharedServices, ThePluginFindsTheHostsSettings) {
    EXPECT_EQ(KSetting::getInstance(), inPlugin<KSetting*()>("_ZN8KSetting11getInstanceEv")());
}

TEST_F(SharedServices, ThePluginFindsTheHostsStorageMonitor) {
    EXPECT_EQ(KDevice::getInstance(), inPlugin<KDevice*()>("_ZN7KDevice11getInstanceEv")());
    KDevice::dropInstance();
}

TEST_F(SharedServices, AreShownWholeByThePlugin) {
    std::set<std::string> shown;
    for (const DynamicSymbol& symbol : services(PLUGIN_FILE))
        shown.insert(symbol.name);
    const QByteArray host = QCoreApplication::applicationFilePath().toUtf8();
    for (const DynamicSymbol& symbol : services(host.constData()))
        EXPECT_EQ(1u, shown.count(symbol.name)) << symbol.name;
}

TEST_F(SharedServices, AreLeftAloneWhileThePluginComesAndGoes) {
    unload();
    auto& guard = *static_cast<std::mutex*>(inHost("_ZN7KDevice16m_instance_guardE"));
    KBuzzer::getInstance();
    m_panel->showMessageAsync(text("an entry"), text("moves the colours on"), true);
    const std::lock_guard<std::mutex> held(guard);
    const Bytes before = sharedData();
    EXPECT_EQ(1u, before.count("_ZN7KDevice16m_instance_guardE"));
    load();
    expectSharedDataIs(before);
    unload();
    ASSERT_FALSE(isLoaded());
    expectSharedDataIs(before);
}

TEST_F(SharedServices, OutliveThePlugin) {
    m_panel->showMessageAsync(text("before"), text("unloading"), true);
    unload();
    ASSERT_FALSE(isLoaded());
    m_panel->_showMessage(m_panel.get(), text("after"), text("unloading"), true);
    EXPECT_EQ(2, entries().count());
    EXPECT_EQ(text("after\nunloading"), firstEntry());
    QImage picture(m_panel->size(), QImage::Format_RGB32);
    m_panel->render(&picture);
    EXPECT_FALSE(QImage(text(":/images/up_arrow.png")).isNull());
}
