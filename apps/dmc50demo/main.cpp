// Shows the driver at work on a simulated line: ./demo runs it.
#include "apps/dmc50demo/demonstration.h"
#include "host/transfer/privatestick.h"

#include <CLI/CLI.hpp>

#include <QApplication>
#include <QDir>
#include <QLoggingCategory>
#include <QTemporaryDir>
#include <QThread>

#include <cstdlib>

using namespace host;

namespace {

/** The communication on a thread of its own, the application's event loop here, as
 *  in the panel's runtime. */
bool runBesideEventLoop(Demonstration& demonstration) {
    bool ok = false;
    const std::unique_ptr<QThread> communication(
        QThread::create([&] { ok = demonstration.run(); }));
    QObject::connect(communication.get(), &QThread::finished, qApp, &QCoreApplication::quit);
    communication->start();
    QCoreApplication::exec();
    communication->wait();
    return ok;
}

} // namespace

int main(int argc, char** argv) {
    std::string project = "examples/furnace";
    std::string panel = "build/demo-panel";
    std::string plugin;
    CLI::App options("Shows the DMC50 driver at work on a simulated RS-485 line.");
    options.add_option("--project", project, "folder of the sample project");
    options.add_option("--panel", panel, "folder to compile it to");
    options.add_option("--plugin", plugin, "the driver, where it is not found by itself");
    bool brisk = false;
    options.add_flag("--brisk", brisk, "do not wait for a viewer");
    CLI11_PARSE(options, argc, argv);

    const QString plugin_path =
        plugin.empty() ? findDriverPlugin(programDirectory()) : QString::fromStdString(plugin);
    const QTemporaryDir folder;
    const Result<QString> stick =
        mountPrivateStick(folder.path()) // while there is only this thread
            .map([&folder] { return folder.path(); });

    // The plug-in's message panel needs a whole application, but no screen.
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false")); // the driver's own
    const QApplication application(argc, argv);
    Screen screen;
    Demonstration demonstration(screen, brisk, stick);
    const bool ok =
        demonstration.prepare(QString::fromStdString(project),
                              QDir(QString::fromStdString(panel)).absolutePath(), plugin_path) &&
        runBesideEventLoop(demonstration);
    return ok ? EXIT_SUCCESS : EXIT_FAILURE;
}
