// The program carries the panel services, as the panel's runtime does, and so
// does the plug-in: both must use one of each.
#include "tests/support/fakeplatform.h"
#include "tests/support/scopedpanelpaths.h"
#include "tests/support/temporarydirectory.h"

#include "runtime/panel/kbuzzer.h"
#include "runtime/panel/kdevice.h"
#include "runtime/panel/ksetting.h"
#include "runtime/panel/messagecenter.h"

#include <QCoreApplication>
#include <QImage>
#include <QLabel>
#include <QListWidget>

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <memory>

namespace {

class SharedServices : public ::testing::Test {
protected:
    SharedServices() : m_paths(m_directory.path()) { fakePlatform().x86_hmi = true; }
    ~SharedServices() override { unload(); }

    void SetUp() override {
        m_panel.reset(MessageCenter::initInstance(QSize(300, 300), QSize(250, 200), 0,
                                                  QRect(100, 200, 300, 100), int(0xffd0d8e0)));
        m_plugin = dlopen(PLUGIN_FILE, RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(nullptr, m_plugin) << dlerror();
    }

    void unload() {
        if (m_plugin)
            dlclose(m_plugin);
        m_plugin = nullptr;
    }

    /** The plug-in's own copy of a function, by its linker name. */
    template <typename Function>
    Function* inPlugin(const char* name) const {
        void* const symbol = dlsym(m_plugin, name);
        EXPECT_NE(nullptr, symbol) << name;
        return reinterpret_cast<Function*>(symbol);
    }

    QListWidget& entries() const { return *m_panel->findChild<QListWidget*>(); }

    QString firstEntry() const {
        return entries().itemWidget(entries().item(0))->findChild<QLabel*>()->text();
    }

    std::unique_ptr<MessageCenter> m_panel;

private:
    TemporaryDirectory m_directory;
    ScopedPanelPaths m_paths;
    void* m_plugin = nullptr;
};

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

TEST_F(SharedServices, OutliveThePlugin) {
    m_panel->showMessageAsync(text("before"), text("unloading"), true);
    unload();
    ASSERT_EQ(nullptr, dlopen(PLUGIN_FILE, RTLD_NOW | RTLD_NOLOAD));
    m_panel->_showMessage(m_panel.get(), text("after"), text("unloading"), true);
    EXPECT_EQ(2, entries().count());
    EXPECT_EQ(text("after\nunloading"), firstEntry());
    QImage picture(m_panel->size(), QImage::Format_RGB32);
    m_panel->render(&picture);
    EXPECT_FALSE(QImage(text(":/images/up_arrow.png")).isNull());
}
