#ifndef TESTS_PLUGIN_SERVICEHOST_H
#define TESTS_PLUGIN_SERVICEHOST_H

#include "tests/support/fakeplatform.h"
#include "tests/support/scopedpanelpaths.h"
#include "tests/support/temporarydirectory.h"

#include "runtime/panel/messagecenter.h"

#include <QLabel>
#include <QListWidget>

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <memory>

/** A program with a message panel of its own, as the panel's runtime is, that has
 *  loaded the built plug-in. */
class ServiceHost : public ::testing::Test {
protected:
    ServiceHost() : m_paths(m_directory.path()) { fakePlatform().x86_hmi = true; }
    ~ServiceHost() override { unload(); }

    void SetUp() override {
        m_panel.reset(MessageCenter::initInstance(QSize(300, 300), QSize(250, 200), 0,
                                                  QRect(100, 200, 300, 100), int(0xffd0d8e0)));
        load();
    }

    void load() {
        m_plugin = dlopen(PLUGIN_FILE, RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(nullptr, m_plugin) << dlerror();
    }

    void unload() {
        if (m_plugin)
            dlclose(m_plugin);
        m_plugin = nullptr;
    }

    static bool isLoaded() {
        void* const loaded = dlopen(PLUGIN_FILE, RTLD_NOW | RTLD_NOLOAD);
        if (loaded)
            dlclose(loaded); // it has been counted
        return loaded != nullptr;
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

    TemporaryDirectory m_directory;
    std::unique_ptr<MessageCenter> m_panel;

private:
    ScopedPanelPaths m_paths;
    void* m_plugin = nullptr;
};

#endif
