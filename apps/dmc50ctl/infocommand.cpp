#include "apps/dmc50ctl/infocommand.h"

#include "apps/dmc50ctl/valuetable.h"
#include "runtime/interfaces/devicesetting.h"
#include "runtime/interfaces/driversetting.h"

#include <nlohmann/json.hpp>

using namespace host;

namespace {

using Json = nlohmann::ordered_json;

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

void addRows(QVector<QStringList>& rows, const Json& object) {
    for (const auto& [key, value] : object.items()) {
        const std::string text = value.is_string() ? value.get<std::string>() : value.dump();
        rows.append({QString::fromStdString(key), QString::fromStdString(text)});
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

} // namespace

int runInfo(DriverPlugin& plugin, const Project* project, const Options& options) {
    Json info = {{"driver", driverInfo(plugin)}};
    if (project) {
        info["project"] = project->name.toStdString();
        for (const LinkDefinition& link : project->links)
            info["links"].push_back(linkInfo(*project, link));
    }
    if (options.json)
        printLine(QString::fromStdString(info.dump(2)));
    else
        printSections(info);
    return ExitOk;
}
