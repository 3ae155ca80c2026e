// Reads and writes controllers from a PC; see docs/dmc50ctl.md.
#include "apps/dmc50ctl/communication.h"
#include "apps/dmc50ctl/infocommand.h"
#include "apps/dmc50ctl/recipefilecommands.h"
#include "apps/dmc50ctl/silentline.h"
#include "apps/dmc50ctl/valuetable.h"
#include "host/project/paneldirectory.h"
#include "host/transfer/privatestick.h"

#include <QApplication>
#include <QDir>
#include <QLoggingCategory>
#include <QTemporaryDir>

#include <cstdlib>
#include <sys/stat.h>
#include <unistd.h>

using namespace host;

namespace {

int fail(const QStringList& errors, int exit_status) {
    for (const QString& error : errors)
        printError(error);
    return exit_status;
}

int runProjectBuild(const Options& options) {
    const QString target = options.output.isEmpty()
                               ? QDir(options.directory).filePath(QStringLiteral("panel"))
                               : options.output;
    const auto built = buildPanelDirectory(options.directory, target);
    if (!built) {
        // As compilers do, without the program's name, for editors to jump to.
        for (const QString& error : built.error())
            std::fprintf(stderr, "%s\n", error.toUtf8().constData());
        return ExitCommunication;
    }
    printLine(target);
    return ExitOk;
}

int runProjectNew(const Options& options) {
    if (const Result<void> written = writeSampleProject(options.directory); !written)
        return fail({written.error()}, ExitCommunication);
    printLine(QDir(options.directory).filePath(QLatin1String(ProjectFile)));
    return ExitOk;
}

int runAccess(const Options& options, const Target& target, DriverPlugin& plugin) {
    QTemporaryDir scratch;
    const Result<QString> panel = preparePanelDirectory(options, target.project, scratch.path());
    if (!panel)
        return fail({panel.error()}, ExitCommunication);
    setPanelDirectory(*panel);
    return communicate(target, options, plugin, [&] { scratch.remove(); });
}

Result<std::unique_ptr<DriverPlugin>> loadDriver(const Options& options, const QString& place) {
    const QString path = options.plugin.isEmpty() ? findDriverPlugin(place) : options.plugin;
    if (!path.isEmpty())
        return DriverPlugin::load(path);
    return Failure(QString::fromLatin1("the driver is in none of %1; give its path with --plugin")
                       .arg(driverPluginPlaces(place).join(QLatin1String(", "))));
}

int runWithDriver(const Options& options, const QString& place,
                  const std::optional<Target>& target) {
    const Result<std::unique_ptr<DriverPlugin>> plugin = loadDriver(options, place);
    if (!plugin)
        return fail({plugin.error()}, ExitCommunication);
    if (!target)
        return runDriverInfo(**plugin, options);
    return runAccess(options, *target, **plugin);
}

/** A folder that only this user may enter. */
QString privateDirectory() {
    const QString path = QDir::temp().filePath(QString::fromLatin1("runtime-%1").arg(getuid()));
    mkdir(qPrintable(path), S_IRWXU);
    return path;
}

/** The program transfer shows notices, and pictures are drawn by widgets: both need
 *  a whole Qt application. A terminal is no place for windows: they stay unseen. */
std::unique_ptr<QCoreApplication> makeApplication(int& argc, char** argv, const Options& options,
                                                  const std::optional<Target>& target) {
    const bool draws = !options.recipe_file.picture.isEmpty();
    if (!draws && (!target || !target->needsWindows()))
        return std::make_unique<QCoreApplication>(argc, argv);
    // These need no display, whatever the environment says of one.
    setenv("QT_QPA_PLATFORM", "offscreen", draws || options.isTransfer());
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false")); // the driver's own
    setenv("XDG_RUNTIME_DIR", qPrintable(privateDirectory()), 0); // Qt talks about a missing one
    return std::make_unique<QApplication>(argc, argv);
}

} // namespace

int main(int argc, char** argv) {
    const ParsedOptions parsed = parseOptions(argc, argv);
    if (parsed.exit_status)
        return *parsed.exit_status;
    Options options = parsed.options;
    std::unique_ptr<SilentLine> silent_line;
    if (options.command == Options::Command::RecipeTemplate &&
        options.project_directory.isEmpty() && options.port.isEmpty()) {
        silent_line = std::make_unique<SilentLine>();
        options.port = silent_line->path();
    }
    std::optional<Target> target;
    if (options.needsTarget()) {
        const TargetReading reading = readTarget(options);
        if (!reading)
            return fail(reading.error().errors, reading.error().exit_status);
        target = *reading;
    }
    const QString place = programDirectory();
    if (!options.recipe.stick.isEmpty()) {
        if (const Result<void> mounted = mountPrivateStick(options.recipe.stick); !mounted)
            return fail({mounted.error()}, ExitCommunication);
    }
    const std::unique_ptr<QCoreApplication> application =
        makeApplication(argc, argv, options, target);
    switch (options.command) {
    case Options::Command::ProjectBuild:
        return runProjectBuild(options);
    case Options::Command::ProjectNew:
        return runProjectNew(options);
    case Options::Command::RecipeCheck:
        return runRecipeCheck(options);
    case Options::Command::RecipeShow:
        return runRecipeShow(options);
    default:
        return runWithDriver(options, place, target);
    }
}
