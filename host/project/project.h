#ifndef HOST_PROJECT_PROJECT_H
#define HOST_PROJECT_PROJECT_H

#include "host/project/limits.h"
#include "host/project/projectaddress.h"
#include "host/project/tagtype.h"
#include "runtime/interfaces/devicesetting.h"
#include "runtime/interfaces/driversetting.h"

#include <QVector>

namespace host {

/** A line in a project file; 0 stands for "no place". */
struct SourcePlace {
    int line = 0;
    int column = 0; // from 1, in characters
};

/** One line of controllers. The defaults are the driver's own. */
struct LinkDefinition {
    SourcePlace place;
    int id = 0; // LINKID of the database
    QString name;
    QString hmi_port = QStringLiteral("COM2"); // the panel's name of the port
    QString port;                              // the PC's: a device path or tcp://host:port
    int baud = 38400;
    int data_bits = 8;
    int stop_bits = 1;
    int parity = DeviceSetting::EvenParity;
    int timeout_ms = 9000;
    int retries = 1;
    int delay_ms = 20;
    bool care = true; // PortOptions::care

    DeviceSetting deviceSetting() const;
    DriverSetting driverSetting(int default_station) const;
};

/** One controller on a link. */
struct NodeDefinition {
    SourcePlace place;
    int station = 0;
    int link_id = 0;
    bool is_default = false;
    QString ip;
    quint16 port = 0;
};

/** One value of the panel. */
struct TagDefinition {
    SourcePlace place;
    QString name;
    ProjectAddress address;
    TagType type;
    int count = 1; // elements
    QString unit;
    QString comment;
    int link_id = 0;
    int station = 0; // the address's, or the link's default

    /** Double words from address.dword that hold the tag. */
    int dwords() const;

    /** What the driver's read and write are asked. */
    CommunicatorCommand command() const;
};

/** The driver cannot scan more of one command. */
constexpr int LargestTagDwords = 255;

/** Elements of one tag; bits are the smallest. */
constexpr Range TagCountRange = {1, LargestTagDwords * 32};

/** All that a panel.toml says, checked. */
struct Project {
    QString name;
    QVector<LinkDefinition> links;
    QVector<NodeDefinition> nodes;
    QVector<TagDefinition> tags;

    const LinkDefinition* link(int id) const;
    const TagDefinition* tag(const QString& tag_name) const;
    int defaultStation(int link_id) const; // 0: none
    bool hasStation(int link_id, int station) const;
};

} // namespace host

#endif
