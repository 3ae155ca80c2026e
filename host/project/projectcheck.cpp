#include "host/project/projectcheck.h"

#include "host/line/portaddress.h"
#include "host/project/spelling.h"
#include "runtime/interfaces/projectfiles.h"

#include <QMap>
#include <QRegularExpression>

#include <algorithm>

namespace host {

namespace {

/** Reports what is there already; remembers the first place of each key. */
template <typename Key>
class Uniqueness {
public:
    explicit Uniqueness(Diagnostics& diagnostics) : m_diagnostics(diagnostics) {}

    /** @p what names the thing, such as "tag 'PV'". */
    void check(const Key& key, const QString& what, const SourcePlace& place) {
        const auto first = m_lines.constFind(key);
        if (first == m_lines.constEnd())
            m_lines.insert(key, place.line);
        else
            m_diagnostics.add(place, QString::fromLatin1("%1 exists already, in line %2; one of "
                                                         "them must change")
                                         .arg(what)
                                         .arg(*first));
    }

private:
    Diagnostics& m_diagnostics;
    QMap<Key, int> m_lines;
};

/** Keys that are missing or wrong were reported where they were read. */
void checkUniqueLinks(const QVector<LinkDefinition>& links, Diagnostics& diagnostics) {
    Uniqueness<QString> names(diagnostics), ports(diagnostics);
    Uniqueness<int> ids(diagnostics), hmi_ports(diagnostics);
    for (const LinkDefinition& link : links) {
        const int hmi_number = hmiPortNumber(link.hmi_port);
        ids.check(link.id, QString::fromLatin1("link id %1").arg(link.id), link.place);
        if (!link.name.isEmpty())
            names.check(link.name, QString::fromLatin1("link '%1'").arg(link.name), link.place);
        if (hmi_number != 0)
            hmi_ports.check(hmi_number, QString::fromLatin1("a link on %1").arg(link.hmi_port),
                            link.place);
        if (!link.port.isEmpty())
            ports.check(link.port, QString::fromLatin1("a link on %1").arg(link.port), link.place);
    }
}

void checkUnique(const Project& project, Diagnostics& diagnostics) {
    checkUniqueLinks(project.links, diagnostics);
    Uniqueness<QPair<int, int>> stations(diagnostics);
    for (const NodeDefinition& node : project.nodes) {
        if (node.link_id != 0 && node.station != 0)
            stations.check({node.link_id, node.station},
                           QString::fromLatin1("station %1 of this link").arg(node.station),
                           node.place);
    }
    Uniqueness<QString> tags(diagnostics);
    for (const TagDefinition& tag : project.tags) {
        if (!tag.name.isEmpty())
            tags.check(tag.name, QString::fromLatin1("tag '%1'").arg(tag.name), tag.place);
    }
}

/** Every link needs one default node: the only one it has, or the one marked. */
void completeDefault(Project& project, const LinkDefinition& link, Diagnostics& diagnostics) {
    QVector<NodeDefinition*> nodes;
    QVector<NodeDefinition*> marked;
    for (NodeDefinition& node : project.nodes) {
        if (node.link_id == link.id)
            nodes.append(&node);
        if (node.link_id == link.id && node.is_default)
            marked.append(&node);
    }
    if (nodes.isEmpty())
        diagnostics.add(link.place,
                        QString::fromLatin1("link '%1' has no node; add a [[node]] with "
                                            "its station")
                            .arg(link.name));
    else if (nodes.size() == 1)
        nodes.first()->is_default = true;
    else if (marked.isEmpty())
        diagnostics.add(link.place,
                        QString::fromLatin1("link '%1' has %2 nodes but no default; add default = "
                                            "true to one of them")
                            .arg(link.name)
                            .arg(nodes.size()));
    for (int i = 1; i < marked.size(); ++i)
        diagnostics.add(
            marked[i]->place,
            QString::fromLatin1("link '%1' has a second default node; only one may have "
                                "default = true")
                .arg(link.name));
}

void completeStation(const Project& project, TagDefinition& tag, Diagnostics& diagnostics) {
    const LinkDefinition* const link = project.link(tag.link_id);
    if (!link)
        return; // reported where it was read
    tag.station = tag.address.station.value_or(project.defaultStation(tag.link_id));
    if (tag.station == 0 || project.hasStation(tag.link_id, tag.station))
        return;
    diagnostics.add(tag.place,
                    QString::fromLatin1("tag '%1' is at station %2, which link '%3' does "
                                        "not have; add a [[node]] with station = %2")
                        .arg(tag.name)
                        .arg(tag.station)
                        .arg(link->name));
}

} // namespace

int hmiPortNumber(const QString& hmi_port) {
    static const QRegularExpression com(QStringLiteral("^COM([1-9]\\d?)$"));
    static const QRegularExpression ethernet(QStringLiteral("^ETHERNET\\d*$"));
    const QRegularExpressionMatch match = com.match(hmi_port);
    if (match.hasMatch())
        return FirstSerialHmiPort - 1 + match.captured(1).toInt();
    return ethernet.match(hmi_port).hasMatch() ? EthernetHmiPort : 0;
}

void checkLinkPorts(const LinkDefinition& link, const SourcePlace& hmi_place,
                    const SourcePlace& port_place, Diagnostics& diagnostics) {
    if (hmiPortNumber(link.hmi_port) == 0)
        diagnostics.add(hmi_place,
                        QString::fromLatin1("'%1' is not a port of the panel; write COM1 "
                                            "to COM99, or ETHERNET1")
                            .arg(link.hmi_port));
    if (link.port.isEmpty())
        return; // reported where it was read
    if (const auto port = parsePortAddress(link.port); !port)
        diagnostics.add(port_place, port.error());
}

void checkTagShape(const TagDefinition& tag, const SourcePlace& address_place,
                   const SourcePlace& count_place, Diagnostics& diagnostics) {
    const ProjectAddress& address = tag.address;
    const bool is_bit = tag.type.data_type == CommunicatorCommand::Bit;
    if (address.kind == AddressKind::WriteQueueSize && tag.type.bits < 16)
        diagnostics.add(address_place,
                        QString::fromLatin1("%1 is a number of 16 bits; write type = "
                                            "\"word\"")
                            .arg(address.text));
    if (address.kind != AddressKind::Data)
        return;
    if (is_bit && !address.bit)
        diagnostics.add(address_place,
                        QString::fromLatin1("type \"bit\" needs the bit in the address; "
                                            "write %1.0 for the lowest")
                            .arg(address.text));
    if (!is_bit && address.bit)
        diagnostics.add(address_place, QString::fromLatin1("only type \"bit\" takes a bit in the "
                                                           "address; write %1, or type = \"bit\"")
                                           .arg(address.text));
    const int dwords = tag.dwords();
    if (dwords > LargestTagDwords)
        diagnostics.add(count_place,
                        QString::fromLatin1("the tag takes %1 double words; the driver "
                                            "serves at most %2 in one tag")
                            .arg(dwords)
                            .arg(LargestTagDwords));
    if (address.dword > 0xffffffffu - quint32(dwords - 1))
        diagnostics.add(address_place, QStringLiteral("the tag ends beyond 32 bits of address"));
}

void completeAndCheck(Project& project, Diagnostics& diagnostics) {
    if (project.links.isEmpty())
        diagnostics.add({}, QStringLiteral("no link; add a [[link]] with name and port"));
    checkUnique(project, diagnostics);
    for (const LinkDefinition& link : project.links)
        completeDefault(project, link, diagnostics);
    for (TagDefinition& tag : project.tags)
        completeStation(project, tag, diagnostics);
}

} // namespace host
