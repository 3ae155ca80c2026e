#include "tests/plugin/loadedplugin.h"

#include <QPluginLoader>
#include <QStringList>

#include <gtest/gtest.h>

#include <memory>

TEST(EntryPoints, TheRootObjectIsTheSameEachTime) {
    QObject* const object = pluginInstance();
    ASSERT_NE(object, nullptr);
    EXPECT_EQ(pluginInstance(), object);
    EXPECT_STREQ(object->metaObject()->className(), "DriverDMC50v3");
}

TEST(EntryPoints, TheRootObjectIsMadeAnewOnceItIsGone) {
    delete pluginInstance();
    ASSERT_NE(pluginInstance(), nullptr);
    EXPECT_STREQ(pluginInstance()->metaObject()->className(), "DriverDMC50v3");
}

TEST(EntryPoints, CreateDriverMakesANewOneEachTime) {
    const std::unique_ptr<host::Driver> first(createDriver());
    const std::unique_ptr<host::Driver> second(createDriver());
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    EXPECT_NE(first, second);
    EXPECT_NE(first->object(), pluginInstance());
}

TEST(EntryPoints, TheRootObjectCastsToTheDriver) {
    QObject* const object = pluginInstance();
    auto* const driver =
        static_cast<host::Driver*>(object->qt_metacast("com.halvoric.drivers.DriverInterface/1.1"));
    ASSERT_NE(driver, nullptr);
    EXPECT_EQ(driver->object(), object);
    EXPECT_EQ(object->qt_metacast("DriverInterface"), driver);
}

TEST(EntryPoints, TheVerificationTextIsThePanels) {
    typedef const char* (*Query)();
    const QByteArray text =
        reinterpret_cast<Query>(pluginSymbol("qt_plugin_query_verification_data"))();
    const QList<QByteArray> lines = text.split('\n');
    ASSERT_EQ(lines.size(), 4);
    EXPECT_EQ(lines.at(0), QByteArray("pattern=QT_PLUGIN_VERIFICATION_DATA"));
    EXPECT_EQ(lines.at(1), QByteArray("version=4.8.6"));
    EXPECT_EQ(lines.at(2), QByteArray("debug=false"));
    EXPECT_TRUE(lines.at(3).startsWith("buildkey="));
}

TEST(EntryPoints, QtsOwnLoaderTakesThePlugin) {
    QPluginLoader loader(QString::fromUtf8(PLUGIN_FILE));
    QObject* const object = loader.instance();
    ASSERT_NE(object, nullptr) << loader.errorString().toStdString();
    EXPECT_STREQ(object->metaObject()->className(), "DriverDMC50v3");
}
