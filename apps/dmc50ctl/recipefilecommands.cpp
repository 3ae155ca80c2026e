#include "apps/dmc50ctl/recipefilecommands.h"

#include "apps/dmc50ctl/valuetable.h"
#include "common/result.h"
#include "host/recipe/recipechart.h"
#include "host/recipe/recipepicture.h"
#include "host/recipe/recipetable.h"

#include <nlohmann/json.hpp>

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <sys/ioctl.h>
#include <unistd.h>

using namespace host;

namespace {

using Json = nlohmann::ordered_json;

constexpr qint64 LargestFile = 1 << 20; // bytes; a full file has some 10,000
constexpr int DefaultColumns = 80;

/** @p count as in checkRecipe(). */
Result<RecipeCheck> checkFile(const RecipeFileOptions& options, std::optional<int> count) {
    QFile file(options.file);
    if (!file.open(QIODevice::ReadOnly))
        return Failure(QString::fromLatin1("%1: %2").arg(options.file, file.errorString()));
    if (file.isSequential()) // what has come of it by now may not be all
        return Failure(QString::fromLatin1("%1: not a regular file").arg(options.file));
    const QByteArray content = file.read(LargestFile + 1);
    if (content.size() > LargestFile)
        return Failure(QString::fromLatin1("%1: too large for a program file").arg(options.file));
    return checkRecipe(content, count);
}

/** "2 refused, 1 warning"; empty without any. */
QString countsText(const RecipeCheck& check) {
    QStringList counts;
    const int refused = check.count(RecipeSeverity::Refused);
    const int warnings = check.count(RecipeSeverity::Warning);
    if (refused > 0)
        counts.append(QString::fromLatin1("%1 refused").arg(refused));
    if (warnings > 0)
        counts.append(
            QString::fromLatin1(warnings == 1 ? "%1 warning" : "%1 warnings").arg(warnings));
    return counts.join(QLatin1String(", "));
}

QString summary(const QString& file, const RecipeCheck& check) {
    const QString programs =
        QString::fromLatin1(check.lines == 1 ? "%1: %2 program, " : "%1: %2 programs, ")
            .arg(file)
            .arg(check.lines);
    if (check.isGood())
        return programs + QLatin1String("good");
    return programs + countsText(check) +
           QLatin1String(check.count(RecipeSeverity::Refused) > 0
                             ? "; the driver would write nothing"
                             : "; the controller would not hold what the file says");
}

Json findingJson(const RecipeFinding& finding) {
    Json entry = {{"severity", severityName(finding.severity).toStdString()},
                  {"line", nullptr},
                  {"field", nullptr},
                  {"title", nullptr},
                  {"text", nullptr},
                  {"reason", finding.reason.toStdString()},
                  {"driver_row", nullptr},
                  {"driver_column", nullptr}};
    if (finding.line > 0)
        entry["line"] = finding.line;
    if (finding.row >= 0)
        entry["driver_row"] = finding.row;
    if (finding.field == 0)
        return entry;
    entry["field"] = finding.field;
    entry["title"] = recipeTitles().value(finding.column()).trimmed().toStdString();
    entry["text"] = finding.text.toStdString();
    if (finding.column() > 0)
        entry["driver_column"] = finding.column();
    return entry;
}

Json checkJson(const QString& file, const RecipeCheck& check) {
    Json findings = Json::array();
    for (const RecipeFinding& finding : check.findings)
        findings.push_back(findingJson(finding));
    return {{"file", file.toStdString()},
            {"good", check.isGood()},
            {"programs", check.lines},
            {"findings", findings}};
}

Json switchesJson(const RecipeProgram& program, int first, int count) {
    Json values = Json::array();
    for (int i = 0; i < count; ++i)
        values.push_back(program.value(first + i));
    return values;
}

Json segmentJson(const RecipeSegment& segment) {
    const RecipeProgram& program = segment.program;
    return {{"program", program.number},
            {"line", program.line},
            {"start_s", segment.start_s},
            {"end_s", segment.end_s},
            {"from", segment.from},
            {"temperature", program.value(RecipeTemperature)},
            {"soak_plus", program.value(RecipeSoakPlus)},
            {"soak_minus", program.value(RecipeSoakMinus)},
            {"pid_group", program.value(RecipePidGroup)},
            {"events", switchesJson(program, RecipeFirstEvent, RecipeEvents)},
            {"inputs", switchesJson(program, RecipeFirstInput, RecipeInputs)}};
}

Json profileJson(const QString& file, const RecipeProfile& profile) {
    Json segments = Json::array();
    for (const RecipeSegment& segment : profile.segments)
        segments.push_back(segmentJson(segment));
    return {{"file", file.toStdString()},
            {"duration_s", profile.durationSecs()},
            {"segments", segments}};
}

int terminalColumns() {
    winsize size = {};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0)
        return size.ws_col;
    const int columns = qEnvironmentVariableIntValue("COLUMNS");
    return columns > 0 ? columns : DefaultColumns;
}

QString trackText(const RecipeTrack& track) {
    QStringList spans;
    for (const RecipeSpan& span : track.spans)
        spans.append(QString::fromLatin1("%1 to %2")
                         .arg(clockText(span.start_s, false), clockText(span.end_s, false)));
    return recipeTitles().at(track.column) + QLatin1String(": ") + spans.join(QLatin1String(", "));
}

void printCourse(const RecipeCheck& check, const RecipeProfile& profile, bool ascii) {
    printLine(alignedColumns(recipeTable(check.programs)));
    RecipeChartStyle style;
    style.columns = terminalColumns();
    style.unicode = !ascii;
    const QStringList chart = recipeChart(profile, style);
    if (chart.isEmpty())
        return;
    printLine(QStringLiteral("\n°C, h:min"));
    printLine(chart.join(QLatin1Char('\n')));
    for (const RecipeTrack& track : profile.tracks())
        printLine(trackText(track));
}

Result<void> drawPicture(const RecipeFileOptions& options, const RecipeProfile& profile) {
    const QString title =
        QString::fromLatin1("%1, %2 h")
            .arg(QFileInfo(options.file).fileName(), clockText(profile.durationSecs(), false));
    const QImage picture = recipePicture(profile, title);
    if (picture.isNull())
        return Failure(QString::fromLatin1("%1: no program takes time; there is nothing to draw")
                           .arg(options.file));
    QSaveFile file(options.picture);
    if (file.open(QIODevice::WriteOnly) && picture.save(&file, "PNG") && file.commit())
        return {};
    return Failure(QString::fromLatin1("%1: %2").arg(options.picture, file.errorString()));
}

int fail(const QString& error) {
    printError(error);
    return ExitCommunication;
}

} // namespace

int runRecipeCheck(const Options& options) {
    const QString& name = options.recipe_file.file;
    const Result<RecipeCheck> check = checkFile(options.recipe_file, options.recipe_file.count);
    if (!check)
        return fail(check.error());
    if (options.json) {
        printLine(QString::fromStdString(checkJson(name, *check).dump(2)));
    } else {
        for (const RecipeFinding& finding : check->findings)
            printLine(findingText(name, finding));
        printLine(summary(name, *check));
    }
    return check->isGood() ? ExitOk : ExitCommunication;
}

int runRecipeShow(const Options& options) {
    const RecipeFileOptions& file_options = options.recipe_file;
    const Result<RecipeCheck> check = checkFile(file_options, std::nullopt);
    if (!check)
        return fail(check.error());
    const RecipeProfile profile = recipeProfile(
        check->programs, file_options.steps ? RecipeCourse::Step : RecipeCourse::Ramp);
    if (options.json)
        printLine(QString::fromStdString(profileJson(file_options.file, profile).dump(2)));
    else
        printCourse(*check, profile, file_options.ascii);
    if (!check->isGood())
        printError(QString::fromLatin1("%1: %2; \"recipe check\" lists them")
                       .arg(file_options.file, countsText(*check)));
    if (!file_options.picture.isEmpty()) {
        if (const Result<void> drawn = drawPicture(file_options, profile); !drawn)
            return fail(drawn.error());
    }
    return check->count(RecipeSeverity::Refused) == 0 ? ExitOk : ExitCommunication;
}
