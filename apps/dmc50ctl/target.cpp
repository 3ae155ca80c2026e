#include "apps/dmc50ctl/target.h"

#include "apps/dmc50ctl/recipecommands.h"
#include "host/line/portaddress.h"
#include "host/project/databasewriter.h"
#include "host/project/paneldirectory.h"
#include "host/project/projectcheck.h"
#include "host/project/spelling.h"

#include <QDir>

#include <algorithm>

using namespace host;

namespace {

tl::unexpected<TargetErrors> failed(const QStringList& errors, int exit_status) {
    return tl::make_unexpected(TargetErrors{errors, exit_status});
}

tl::unexpected<TargetErrors> usageError(const QString& text) {
    return failed({text}, ExitUsage);
}

/** The command line's settings in place of a link's. */
void overrideLink(LinkDefinition& link, const Options& options) {
    if (!options.port.isEmpty())
        link.port = options.port;
    link.baud = options.baud.value_or(link.baud);
    link.data_bits = options.data_bits.value_or(link.data_bits);
    link.stop_bits = options.stop_bits.value_or(link.stop_bits);
    link.parity = options.parity.value_or(link.parity);
    link.timeout_ms = options.timeout_ms.value_or(link.timeout_ms);
    link.retries = options.retries.value_or(link.retries);
    link.delay_ms = options.delay_ms.value_or(link.delay_ms);
    link.care = link.care && !options.no_care;
}

/** Takes the value off an assignment: the tag's name may itself hold a "=". */
bool splitAssignment(QString& item, QString& value) {
    const int place = item.lastIndexOf(QLatin1Char('='));
    if (place < 1)
        return false;
    value = item.mid(place + 1);
    item.truncate(place);
    return true;
}

/** "ADDRESS[:TYPE[:COUNT]]" as a tag whose name is the text. */
Result<TagDefinition> plainTag(const QString& text) {
    const QStringList parts = text.split(QLatin1Char(':'));
    const Result<ProjectAddress> address = parseProjectAddress(parts.first());
    if (!address)
        return Failure(address.error());
    TagDefinition tag;
    tag.name = text;
    tag.address = *address;
    const bool is_data = address->kind == AddressKind::Data;
    const QString usual = QLatin1String(address->bit ? "bit" : is_data ? "dword" : "word");
    const QString type_name = parts.value(1, usual);
    const auto type = tagTypeByName(type_name);
    if (!type)
        return Failure(QString::fromLatin1("'%1' is not a type%2")
                           .arg(type_name, spellingHint(type_name, tagTypeNames())));
    tag.type = *type;
    bool is_count = true;
    tag.count = parts.size() > 2 ? parts[2].toInt(&is_count) : 1;
    if (!is_count || !TagCountRange.holds(tag.count) || parts.size() > 3)
        return Failure(
            QString::fromLatin1("'%1' has no good count; write NA1000:dword:24").arg(text));
    return tag;
}

void addStation(Project& project, int station, bool is_default) {
    if (project.hasStation(1, station))
        return;
    NodeDefinition node;
    node.station = station;
    node.link_id = 1;
    node.is_default = is_default;
    project.nodes.append(node);
}

/** A project of one link with just the addresses that are asked for. */
ProjectReading plainProject(const Options& options, const QStringList& items) {
    Project project;
    LinkDefinition link;
    link.id = 1;
    link.name = options.port;
    overrideLink(link, options);
    project.links.append(link);
    addStation(project, options.station.value_or(1), true);
    Diagnostics diagnostics{QString()};
    for (const QString& item : items) {
        if (project.tag(item))
            continue; // named twice
        const Result<TagDefinition> tag = plainTag(item);
        if (!tag) {
            diagnostics.add({}, tag.error());
            continue;
        }
        project.tags.append(*tag);
        project.tags.last().link_id = 1;
        checkTagShape(*tag, {}, {}, diagnostics);
        addStation(project, tag->address.station.value_or(options.station.value_or(1)), false);
    }
    if (diagnostics.isEmpty())
        completeAndCheck(project, diagnostics);
    if (!diagnostics.isEmpty())
        return tl::make_unexpected(diagnostics.lines());
    return project;
}

/** A tag by its name, or by its address as the project writes it. */
const TagDefinition* findTag(const Project& project, const QString& item) {
    if (const TagDefinition* const named = project.tag(item))
        return named;
    const Result<ProjectAddress> address = parseProjectAddress(item);
    for (const TagDefinition& tag : project.tags) {
        if (address && tag.address.accessText() == address->accessText() &&
            tag.address.station == address->station)
            return &tag;
    }
    return nullptr;
}

QStringList tagNames(const Project& project) {
    QStringList names;
    for (const TagDefinition& tag : project.tags)
        names.append(tag.name);
    return names;
}

/** Fills target.tags; returns what could not be found. */
QStringList chooseTags(Target& target, const QStringList& items) {
    QStringList errors;
    if (items.isEmpty())
        target.tags = target.project.tags;
    for (const QString& item : items) {
        if (const TagDefinition* const tag = findTag(target.project, item)) {
            target.tags.append(*tag);
            continue;
        }
        const QString near = nearestSpelling(item, tagNames(target.project));
        errors.append(QString::fromLatin1("the project has no tag '%1'%2")
                          .arg(item, near.isEmpty()
                                         ? QString()
                                         : QString::fromLatin1("; did you mean '%1'?").arg(near)));
    }
    return errors;
}

TargetReading readPlainTarget(const Options& options, const QStringList& items) {
    const ProjectReading project = plainProject(options, items);
    if (!project)
        return failed(project.error(), ExitUsage);
    return Target{*project, {}, {}, {}};
}

TargetReading readProjectTarget(const Options& options) {
    const QString path = QDir(options.project_directory).filePath(QLatin1String(ProjectFile));
    const ProjectReading project = readProjectFile(path);
    if (!project)
        return failed(project.error(), ExitCommunication);
    Target target;
    target.project = *project;
    if (!options.port.isEmpty() && target.project.links.size() > 1)
        return usageError(QStringLiteral("--port cannot stand for the ports of several links"));
    for (LinkDefinition& link : target.project.links)
        overrideLink(link, options);
    return target;
}

} // namespace

QSet<int> Target::linkIds() const {
    QSet<int> ids;
    if (recipe)
        ids.insert(recipe->slots_known.link_id);
    for (const TagDefinition& tag : tags)
        ids.insert(tag.link_id);
    return ids;
}

bool Target::needsWindows() const {
    return recipe || std::any_of(tags.begin(), tags.end(), [](const TagDefinition& tag) {
               return tag.address.kind == AddressKind::Transfer;
           });
}

TargetReading readTarget(const Options& options) {
    if (!options.port.isEmpty()) {
        if (const auto port = parsePortAddress(options.port); !port)
            return usageError(port.error());
    }
    QStringList items = options.items;
    if (options.isTransfer() && options.project_directory.isEmpty())
        items = recipeSlotItems();
    QStringList values;
    if (options.command == Options::Command::Write) {
        for (QString& item : items) {
            QString value;
            if (!splitAssignment(item, value))
                return usageError(
                    QString::fromLatin1("'%1' is no assignment; write %1=VALUE").arg(item));
            values.append(value);
        }
    }
    TargetReading target = options.project_directory.isEmpty() ? readPlainTarget(options, items)
                                                               : readProjectTarget(options);
    if (!target)
        return target;
    target->values = values;
    const QStringList errors = chooseTags(*target, items);
    if (!errors.isEmpty())
        return failed(errors, ExitUsage);
    if (!options.isTransfer())
        return target;
    const Result<RecipeOrder> order = recipeOrder(target->project, options);
    if (!order)
        return usageError(order.error());
    target->recipe = *order;
    target->tags = order->slots_known.tags;
    return target;
}

Result<QString> preparePanelDirectory(const Options& options, const Project& project,
                                      const QString& scratch) {
    if (!options.project_directory.isEmpty() && isPanelDirectory(options.project_directory))
        return options.project_directory;
    return writeDatabase(project, scratch).map([&scratch] { return scratch; });
}
