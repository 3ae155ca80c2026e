#include "apps/dmc50ctl/infocommand.h"

#include "apps/dmc50ctl/stationtable.h"
#include "apps/dmc50ctl/valuetable.h"
#include "runtime/interfaces/devicesetting.h"
#include "runtime/interfaces/driversetting.h"

#include <nlohmann/json.hpp>

#include <QScopeGuard>

using namespace host;

namespace {

using Json = nlohmann::ordered_json;

constexpr qint64 ListeningMsecs = 3000; // for each link, at most

Json driverInfo(DriverPlugin& plugin) {
    const std::unique_ptr<DriverInterface> driver = plugin.createDriver();
    const std::unique_ptr<DeviceSetting> device(driver->getDefaultSerialDeviceSetting());
    const std::unique_ptr<DriverSetting> timing(driver->getDefaultDriverSetting());
    return {{"name", driver->name().toStdString()},
            {"vendor", driver->vender().toStdString()},
            {"version", driver->getVersionNumber().toStdString()},
            {"file", plugin.path().toStdString()},
            {"line", driver->getStringBasedDefaultDriverSetting().toStdString()},
            {"port", device->string.toStdString()},
            {"timeout_ms", timing->timeout},
            {"retries", timing->retry},
            {"delay_ms", timing->delay}};
}

Json linkInfo(const Project& project, const LinkDefinition& link) {
    Json stations = Json::array();
    for (const NodeDefinition& node : project.nodes) {
        if (node.link_id == link.id)
            stations.push_back(node.station);
    }
    int tags = 0;
    int dwords = 0;
    for (const TagDefinition& tag : project.tags) {
        tags += tag.link_id == link.id;
        dwords += tag.link_id == link.id ? tag.dwords() : 0;
    }
    return {{"name", link.name.toStdString()},
            {"panel_port", link.hmi_port.toStdString()},
            {"port", link.port.toStdString()},
            {"stations", stations},
            {"default_station", project.defaultStation(link.id)},
            {"tags", tags},
            {"double_words", dwords},
            {"timeout_ms", link.timeout_ms},
            {"retries", link.retries},
            {"delay_ms", link.delay_ms}};
}

/** "station 1: up since 2.0 s, answers in 8.1 ms, at worst in 20.0 ms; 0 withheld" */
QString healthText(const Json& health) {
    QString text = QString::fromStdString(health["state"].get<std::string>());
    const auto add = [&](const char* form, const char* key) {
        if (health.contains(key))
            text += QString::fromLatin1(form).arg(health[key].get<double>(), 0, 'f', 1);
    };
    add(" since %1 s", "since_s");
    add(", answers in %1 ms", "answer_ms");
    add(", at worst in %1 ms", "worst_ms");
    return text + QString::fromLatin1("; %1 withheld").arg(health["withheld"].get<quint64>());
}

void addRows(QVector<QStringList>& rows, const Json& object) {
    for (const auto& [key, value] : object.items()) {
        if (key == "station_health") {
            for (const Json& health : value)
                rows.append({QString::fromLatin1("station %1").arg(health["station"].get<int>()),
                             healthText(health)});
            continue;
        }
        const std::string text = value.is_string() ? value.get<std::string>() : value.dump();
        rows.append({QString::fromStdString(key), QString::fromStdString(text)});
    }
}

/** A tag of each station of the link. */
QVector<TagDefinition> tagsToAsk(const Project& project, int link_id) {
    QVector<TagDefinition> tags;
    QSet<int> stations;
    for (const TagDefinition& tag : project.tags) {
        if (tag.link_id != link_id || tag.address.kind != AddressKind::Data ||
            stations.contains(tag.station))
            continue;
        stations.insert(tag.station);
        tags.append(tag);
    }
    return tags;
}

/** Until every station has shown how it is, or the time is over. */
std::vector<StationStatus> listen(PanelSession& session, const QVector<TagDefinition>& tags,
                                  Interruption& interruption) {
    ValueHub hub(session, tags, HubSetup());
    const std::unique_ptr<Subscription> changes = hub.subscribe(hub.allTags());
    const auto taken_away = qScopeGuard([&] { interruption.setEnding(nullptr); });
    interruption.setEnding([&] {
        hub.stop();
        changes->mailbox().wake();
    });
    Clock& clock = Clock::system();
    const qint64 end = clock.msecsSinceBoot() + ListeningMsecs;
    while (!interruption.interrupted() && !hub.hasTriedAll() && clock.msecsSinceBoot() < end) {
        if (changes->mailbox().await(int(end - clock.msecsSinceBoot())))
            changes->mailbox().take();
    }
    return hub.stations();
}

/** Adds how the link's line and stations are. */
void addHealth(Json& info, const LinkDefinition& link, const Target& target, DriverPlugin& plugin,
               const PanelSetup& setup, Interruption& interruption) {
    const QVector<TagDefinition> tags = tagsToAsk(target.project, link.id);
    if (tags.isEmpty())
        return;
    const auto session = PanelSession::open(target.project, {link.id}, plugin, setup);
    info["line"] = session ? "open" : session.error().toStdString();
    if (!session)
        return;
    const std::vector<StationStatus> stations = listen(**session, tags, interruption);
    const qint64 now = Clock::system().msecsSinceBoot();
    for (const StationStatus& status : stations) {
        Json health = {{"station", status.station}};
        health.update(healthJson(status.health, now));
        info["station_health"].push_back(health);
    }
}

void printSections(const Json& info) {
    QVector<QStringList> rows = {{QStringLiteral("DRIVER")}};
    addRows(rows, info["driver"]);
    for (const Json& link : info.value("links", Json::array())) {
        rows.append({QString()});
        rows.append({QStringLiteral("LINK")});
        addRows(rows, link);
    }
    printLine(alignedColumns(rows));
}

int printInfo(const Json& info, const Options& options) {
    if (options.json)
        printLine(QString::fromStdString(info.dump(2)));
    else
        printSections(info);
    return ExitOk;
}

} // namespace

int runDriverInfo(DriverPlugin& plugin, const Options& options) {
    return printInfo({{"driver", driverInfo(plugin)}}, options);
}

int runInfo(DriverPlugin& plugin, const Target& target, const Options& options,
            const PanelSetup& setup, Interruption& interruption) {
    Json info = {{"driver", driverInfo(plugin)}, {"project", target.project.name.toStdString()}};
    for (const LinkDefinition& link : target.project.links) {
        Json about = linkInfo(target.project, link);
        addHealth(about, link, target, plugin, setup, interruption);
        info["links"].push_back(about);
    }
    return printInfo(info, options);
}
