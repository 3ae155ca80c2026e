#include "host/project/project.h"

#include <algorithm>

namespace host {

DeviceSetting LinkDefinition::deviceSetting() const {
    DeviceSetting setting(DEVICE_RS485, hmi_port, baud, data_bits,
                          stop_bits == 1 ? DeviceSetting::OneStopBit : DeviceSetting::TwoStopBits,
                          parity);
    setting.linkID = id;
    return setting;
}

DriverSetting LinkDefinition::driverSetting(int default_station) const {
    return DriverSetting(timeout_ms, retries, default_station, delay_ms);
}

int TagDefinition::dwords() const {
    if (address.kind != AddressKind::Data)
        return 0;
    return (address.bit.value_or(0) + count * type.bits + 31) / 32;
}

CommunicatorCommand TagDefinition::command() const {
    return CommunicatorCommand(address.accessText(), type.data_type, count);
}

const LinkDefinition* Project::link(int id) const {
    const auto found = std::find_if(links.begin(), links.end(),
                                    [id](const LinkDefinition& link) { return link.id == id; });
    return found == links.end() ? nullptr : &*found;
}

const TagDefinition* Project::tag(const QString& tag_name) const {
    const auto found = std::find_if(tags.begin(), tags.end(),
                                    [&](const TagDefinition& tag) { return tag.name == tag_name; });
    return found == tags.end() ? nullptr : &*found;
}

int Project::defaultStation(int link_id) const {
    const auto found = std::find_if(nodes.begin(), nodes.end(), [&](const NodeDefinition& node) {
        return node.link_id == link_id && node.is_default;
    });
    return found == nodes.end() ? 0 : found->station;
}

bool Project::hasStation(int link_id, int station) const {
    return std::any_of(nodes.begin(), nodes.end(), [&](const NodeDefinition& node) {
        return node.link_id == link_id && node.station == station;
    });
}

} // namespace host
