#include "apps/dmc50ctl/recipecommands.h"

#include "apps/dmc50ctl/progressline.h"
#include "apps/dmc50ctl/valuetable.h"

#include <nlohmann/json.hpp>

using namespace host;

namespace {

QStringList linkNames(const Project& project, const QVector<int>& link_ids) {
    QStringList names;
    for (const int id : link_ids)
        names.append(project.link(id)->name);
    return names;
}

/** An error when there is none, or more than one. */
Result<int> chooseLink(const Project& project, const QString& wanted) {
    const QVector<int> links = linksWithRecipes(project);
    const QStringList names = linkNames(project, links);
    if (links.isEmpty())
        return Failure(QStringLiteral("the project has no tag for a program, such as NA1000 with "
                                      "count = 24"));
    if (wanted.isEmpty() && links.size() > 1)
        return Failure(QString::fromLatin1("choose a link with --link: %1")
                           .arg(names.join(QLatin1String(", "))));
    if (!wanted.isEmpty() && !names.contains(wanted))
        return Failure(QString::fromLatin1("no link '%1' has programs; these have: %2")
                           .arg(wanted, names.join(QLatin1String(", "))));
    return wanted.isEmpty() ? links.first() : links[names.indexOf(wanted)];
}

QString success(const RecipeReport& report, Options::Command command) {
    const QString number = QString::number(report.programs.size());
    switch (command) {
    case Options::Command::RecipePush:
        return QString::fromLatin1("%1 programs pushed from %2 and read back")
            .arg(number, report.file);
    case Options::Command::RecipeTemplate:
        return QString::fromLatin1("blank file for %1 programs: %2").arg(number, report.file);
    default:
        return QString::fromLatin1("%1 programs pulled to %2").arg(number, report.file);
    }
}

nlohmann::ordered_json reportJson(const RecipeReport& report) {
    std::vector<int> programs(report.programs.begin(), report.programs.end());
    std::vector<std::string> problems;
    for (const QString& problem : report.problems)
        problems.push_back(problem.toStdString());
    return {{"file", report.file.toStdString()}, {"programs", programs}, {"problems", problems}};
}

void print(const RecipeReport& report, const Options& options) {
    if (options.json)
        printLine(QString::fromStdString(reportJson(report).dump()));
    else if (!report.programs.isEmpty())
        printLine(success(report, options.command));
    for (const QString& problem : report.problems)
        printError(problem);
}

RecipeReport run(RecipeJob& job, Options::Command command) {
    switch (command) {
    case Options::Command::RecipePush:
        return job.push();
    case Options::Command::RecipeTemplate:
        return job.makeTemplate();
    default:
        return job.pull();
    }
}

} // namespace

Result<RecipeOrder> recipeOrder(const Project& project, const Options& options) {
    const Result<int> link = chooseLink(project, options.recipe.link);
    if (!link)
        return Failure(link.error());
    RecipeOrder order;
    order.slots_known = recipeSlots(project, *link, options.recipe.count);
    order.program_id = options.recipe.program_id;
    order.count = options.recipe.count;
    order.stick = options.recipe.stick;
    order.file = options.recipe.file;
    order.ignore_labels = options.recipe.ignore_labels;
    if (order.slots_known.partial.isEmpty())
        return order;
    return Failure(QString::fromLatin1("program %1: the project's tags do not have all %2 double "
                                       "words; the driver would take the others for 0")
                       .arg(numberRanges(order.slots_known.partial))
                       .arg(RecipeColumns));
}

int runRecipe(PanelSession& session, const Target& target, PanelOperator& panel,
              const Options& options, const std::atomic<bool>& interrupted) {
    const RecipeOrder& order = *target.recipe;
    ProgressLine progress(options.json);
    RecipeJob job(
        session.link(order.slots_known.link_id), panel, order,
        [&](const char* what, int percent) { progress.show(QLatin1String(what), percent); });
    const RecipeReport report = run(job, options.command);
    progress.clear();
    if (interrupted)
        return ExitInterrupted; // which has been told
    print(report, options);
    job.settle();
    return report.ok() ? ExitOk : ExitCommunication;
}
