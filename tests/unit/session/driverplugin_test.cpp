#include "host/session/driverplugin.h"

#include "tests/support/errorof.h"

#include <QDir>
#include <QLibraryInfo>
#include <QTemporaryDir>
#include <QTemporaryFile>

#include <gtest/gtest.h>

using namespace host;

namespace {

QString loadProblem(const QString& path) {
    return errorOf(DriverPlugin::load(path));
}

} // namespace

TEST(DriverPluginLoading, SaysWhenThereIsNoFile) {
    EXPECT_EQ(loadProblem(QStringLiteral("/nowhere/libdmc50v3.so")),
              QStringLiteral("/nowhere/libdmc50v3.so: no such file"));
}

TEST(DriverPluginLoading, SaysWhenTheFileIsNoPlugin) {
    QTemporaryFile file;
    ASSERT_TRUE(file.open());
    file.write("not a shared object");
    file.flush();
    EXPECT_TRUE(loadProblem(file.fileName()).startsWith(file.fileName() + ": "));
}

TEST(DriverPluginLoading, SaysWhenThePluginIsNoDriver) {
    const QString other = QLibraryInfo::location(QLibraryInfo::PluginsPath) +
                          QStringLiteral("/sqldrivers/libqsqlite.so");
    const QString problem = QStringLiteral(": its root object is not a driver "
                                           "(com.halvoric.drivers.DriverInterface/1.1)");
    EXPECT_EQ(loadProblem(other), other + problem);
    const QString from_here = QDir::current().relativeFilePath(other);
    EXPECT_EQ(loadProblem(from_here), from_here + problem);
}

TEST(DriverPluginSearch, LooksBesideTheProgramThenInTheBuildTreeThenInTheInstallation) {
    EXPECT_EQ(driverPluginPlaces(QStringLiteral("/b/apps/dmc50ctl")),
              QStringList({QStringLiteral("/b/apps/dmc50ctl/libdmc50v3.so"),
                           QStringLiteral("/b/runtime/drivers/dmc50v3/libdmc50v3.so"),
                           QStringLiteral("/b/apps/lib/libdmc50v3.so")}));
    QTemporaryDir empty;
    EXPECT_EQ(findDriverPlugin(empty.filePath(QStringLiteral("bin"))), QString());
    QFile installed(empty.filePath(QStringLiteral("libdmc50v3.so")));
    ASSERT_TRUE(installed.open(QIODevice::WriteOnly));
    EXPECT_EQ(findDriverPlugin(empty.path()), installed.fileName());
}
