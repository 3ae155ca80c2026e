// The program carries the panel services, as the panel's runtime does, and so
// does the plug-in: both must use one of each.
#include "tests/plugin/servicehost.h"

#include "runtime/panel/kbuzzer.h"
#include "runtime/panel/kdevice.h"
#include "runtime/panel/ksetting.h"

#include <QImage>

namespace {

class SharedServices : public ServiceHost {};

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
    ASSERT_FALSE(isLoaded());
    m_panel->_showMessage(m_panel.get(), text("after"), text("unloading"), true);
    EXPECT_EQ(2, entries().count());
    EXPECT_EQ(text("after\nunloading"), firstEntry());
    QImage picture(m_panel->size(), QImage::Format_RGB32);
    m_panel->render(&picture);
    EXPECT_FALSE(QImage(text(":/images/up_arrow.png")).isNull());
}
