#include "host/project/projectreader.h"

#include "host/project/limits.h"
#include "host/project/projectcheck.h"
#include "host/project/spelling.h"
#include "host/project/tomltable.h"

#include <QFile>

namespace host {

namespace {

/** Fills a Project from the root table, section by section. */
class ProjectReader {
public:
    explicit ProjectReader(Diagnostics& diagnostics) : m_diagnostics(diagnostics) {}

    Project read(const toml::table& root);

private:
    void readHead(const toml::node& node);
    void readLink(TomlTable& table);
    void readNode(TomlTable& table);
    void readTag(TomlTable& table);
    void readTagType(TomlTable& table, TagDefinition& tag);
    void readAddress(TomlTable& table, TagDefinition& tag);
    int readLinkReference(TomlTable& table);

    using ReadEntry = void (ProjectReader::*)(TomlTable&);
    void readEntries(const toml::table& root, const char* name, ReadEntry read_entry);
    void reportUnknownSections(const toml::table& root);

    Diagnostics& m_diagnostics;
    Project m_project;
};

Project ProjectReader::read(const toml::table& root) {
    if (const toml::node* const head = root.get("project"))
        readHead(*head);
    readEntries(root, "link", &ProjectReader::readLink);
    readEntries(root, "node", &ProjectReader::readNode);
    readEntries(root, "tag", &ProjectReader::readTag);
    reportUnknownSections(root);
    return std::move(m_project);
}

void ProjectReader::readHead(const toml::node& node) {
    if (!node.is_table()) {
        m_diagnostics.add(placeOf(node), QStringLiteral("'project' must be written as [project]"));
        return;
    }
    TomlTable table(*node.as_table(), QStringLiteral("[project]"), m_diagnostics);
    m_project.name = table.text("name").value_or(QString());
    table.text("comment");
    table.reportUnknownKeys();
}

void ProjectReader::readEntries(const toml::table& root, const char* name, ReadEntry read_entry) {
    const toml::node* const found = root.get(name);
    if (!found)
        return;
    const QString section = QString::fromLatin1("[[%1]]").arg(QLatin1String(name));
    const toml::array* const entries = found->as_array();
    if (!entries || !entries->is_homogeneous<toml::table>()) {
        m_diagnostics.add(placeOf(*found),
                          QString::fromLatin1("'%1' must be written as %2, once for "
                                              "each")
                              .arg(QLatin1String(name), section));
        return;
    }
    for (const toml::node& entry : *entries) {
        TomlTable table(*entry.as_table(), section, m_diagnostics);
        (this->*read_entry)(table);
        table.reportUnknownKeys();
    }
}

void ProjectReader::reportUnknownSections(const toml::table& root) {
    const QStringList known = {QStringLiteral("project"), QStringLiteral("link"),
                               QStringLiteral("node"), QStringLiteral("tag")};
    for (const auto& [key, node] : root) {
        const QString name = QString::fromUtf8(key.data(), int(key.length()));
        if (!known.contains(name)) {
            m_diagnostics.add(
                placeOf(key.source()),
                QString::fromLatin1("unknown section '%1'%2").arg(name, spellingHint(name, known)));
        }
    }
}

void ProjectReader::readLink(TomlTable& table) {
    const QStringList parities = {QStringLiteral("none"), QStringLiteral("odd"),
                                  QStringLiteral("even")}; // in the order of their codes
    LinkDefinition link;
    link.place = table.place();
    link.name = table.requiredText("name", "line 1").value_or(QString());
    link.id = table.integer("id", LinkIdRange).value_or(m_project.links.size() + 1);
    link.hmi_port = table.text("hmiport").value_or(link.hmi_port);
    link.port = table.requiredText("port", "/dev/ttyUSB0").value_or(QString());
    link.baud = table.integer("baud", BaudRange).value_or(link.baud);
    link.data_bits = table.integer("databits", DataBitsRange).value_or(link.data_bits);
    link.stop_bits = table.integer("stopbits", StopBitsRange).value_or(link.stop_bits);
    if (const auto parity = table.choice("parity", parities))
        link.parity = parities.indexOf(*parity);
    link.timeout_ms = table.integer("timeout", TimeoutRange).value_or(link.timeout_ms);
    link.retries = table.integer("retry", RetryRange).value_or(link.retries);
    link.delay_ms = table.integer("delay", DelayRange).value_or(link.delay_ms);
    link.care = table.flag("care").value_or(link.care);
    checkLinkPorts(link, table.placeOf("hmiport"), table.placeOf("port"), m_diagnostics);
    m_project.links.append(link);
}

int ProjectReader::readLinkReference(TomlTable& table) {
    const std::optional<QString> name = table.text("link");
    if (!name && m_project.links.size() == 1)
        return m_project.links.first().id;
    QStringList names;
    for (const LinkDefinition& link : std::as_const(m_project.links)) {
        if (name && link.name == *name)
            return link.id;
        names.append(link.name);
    }
    const QString problem =
        name ? QString::fromLatin1("there is no link '%1'%2").arg(*name, spellingHint(*name, names))
             : QString::fromLatin1("which link? add link = \"...\"%1")
                   .arg(spellingHint(QString(), names));
    if (!m_project.links.isEmpty())
        table.report("link", problem);
    return 0;
}

void ProjectReader::readNode(TomlTable& table) {
    NodeDefinition node;
    node.place = table.place();
    node.station = table.requiredInteger("station", StationRange).value_or(0);
    node.link_id = readLinkReference(table);
    node.is_default = table.flag("default").value_or(false);
    node.ip = table.text("ip").value_or(QString());
    node.port = quint16(table.integer("port", IpPortRange).value_or(0));
    table.text("comment");
    m_project.nodes.append(node);
}

void ProjectReader::readAddress(TomlTable& table, TagDefinition& tag) {
    const std::optional<QString> text = table.requiredText("address", "PA0011000");
    if (!text)
        return;
    const Result<ProjectAddress> address = parseProjectAddress(*text);
    if (address)
        tag.address = *address;
    else
        table.report("address", address.error());
}

void ProjectReader::readTagType(TomlTable& table, TagDefinition& tag) {
    const bool is_data = tag.address.kind == AddressKind::Data;
    const char* const usual = tag.address.bit ? "bit" : is_data ? "dword" : "word";
    const auto name = table.choice("type", tagTypeNames()).value_or(QLatin1String(usual));
    tag.type = tagTypeByName(name).value_or(TagType());
    tag.count = table.integer("count", TagCountRange).value_or(1);
}

void ProjectReader::readTag(TomlTable& table) {
    TagDefinition tag;
    tag.place = table.place();
    tag.name = table.requiredText("name", "Temperature").value_or(QString());
    readAddress(table, tag);
    readTagType(table, tag);
    tag.unit = table.text("unit").value_or(QString());
    tag.comment = table.text("comment").value_or(QString());
    tag.link_id = readLinkReference(table);
    if (!tag.address.text.isEmpty())
        checkTagShape(tag, table.placeOf("address"), table.placeOf("count"), m_diagnostics);
    m_project.tags.append(tag);
}

/** What the parser says, and how to write it right where that is not plain. */
QString syntaxProblem(const toml::parse_error& error) {
    static const struct {
        const char* said;
        const char* hint;
    } hints[] = {{"could not determine value type", "; a text stands in double quotes"},
                 {"invalid utf-8", "; save the file as UTF-8"},
                 {"cannot redefine", "; a key stands only once in its section"}};
    QString text = QString::fromUtf8(error.description().data());
    for (const auto& [said, hint] : hints) {
        if (text.contains(QLatin1String(said)))
            return text + QLatin1String(hint);
    }
    return text;
}

} // namespace

ProjectReading readProjectText(const QByteArray& text, const QString& name) {
    Diagnostics diagnostics(name);
    Project project;
    try {
        const toml::table root =
            toml::parse(std::string_view(text.constData(), size_t(text.size())));
        project = ProjectReader(diagnostics).read(root);
        completeAndCheck(project, diagnostics);
    } catch (const toml::parse_error& error) {
        diagnostics.add(placeOf(error.source()), syntaxProblem(error));
    }
    if (!diagnostics.isEmpty())
        return tl::make_unexpected(diagnostics.lines());
    return project;
}

ProjectReading readProjectFile(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return tl::make_unexpected(
            QStringList(QString::fromLatin1("%1: %2").arg(path, file.errorString())));
    return readProjectText(file.readAll(), path);
}

} // namespace host
