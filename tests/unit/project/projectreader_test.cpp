#include "host/project/projectreader.h"

#include "tests/support/errorof.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <ostream>

using namespace host;

namespace {

const QString Projects = QStringLiteral(TEST_DATA_DIR "/projects/");

QByteArray contentOf(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(path);
    return file.readAll();
}

std::vector<std::string> badProjects() {
    std::vector<std::string> names;
    const QStringList files = QDir(Projects).entryList({QStringLiteral("*.toml")});
    for (const QString& file : files)
        names.push_back(file.chopped(5).toStdString());
    return names;
}

ProjectReading readText(const char* text) {
    return readProjectText(text, QStringLiteral("panel.toml"));
}

const char SmallProject[] = R"([[link]]
name = "line"
port = "/dev/ttyUSB0"
[[node]]
station = 3
[[tag]]
name = "PV"
address = "PA0011000"
)";

class BadProject : public ::testing::TestWithParam<std::string> {};

} // namespace

TEST_P(BadProject, GetsTheMessagesOfItsGoldenFile) {
    const QString name = QString::fromStdString(GetParam());
    const ProjectReading reading =
        readProjectText(contentOf(Projects + name + ".toml"), QStringLiteral("panel.toml"));
    EXPECT_EQ(errorOf(reading).join('\n').toStdString() + '\n',
              contentOf(Projects + name + ".expected").toStdString());
}

INSTANTIATE_TEST_SUITE_P(Golden, BadProject, ::testing::ValuesIn(badProjects()),
                         [](const auto& test) { return test.param; });

TEST(ProjectReader, FillsInTheDriversDefaults) {
    const ProjectReading reading = readText(SmallProject);
    ASSERT_EQ(errorOf(reading), QStringList());
    const LinkDefinition& link = reading->links.first();
    EXPECT_EQ(link.id, 1);
    const DeviceSetting device = link.deviceSetting();
    EXPECT_EQ(device.type, DEVICE_RS485);
    EXPECT_EQ(device.string, QStringLiteral("COM2"));
    EXPECT_EQ(device.baudrate, 38400);
    EXPECT_EQ(device.databits, 8);
    EXPECT_EQ(device.stopbits, 0);
    EXPECT_EQ(device.parity, 2);
    EXPECT_EQ(device.linkID, 1);
    const DriverSetting driver = link.driverSetting(3);
    EXPECT_EQ(driver.timeout, 9000);
    EXPECT_EQ(driver.retry, 1);
    EXPECT_EQ(driver.stationid, 3);
    EXPECT_EQ(driver.delay, 20);
}

TEST(ProjectReader, MakesTheOnlyNodeOfALinkItsDefault) {
    const Project project = *readText(SmallProject);
    EXPECT_TRUE(project.nodes.first().is_default);
    EXPECT_EQ(project.defaultStation(1), 3);
    EXPECT_EQ(project.tag(QStringLiteral("PV"))->station, 3);
}

TEST(ProjectReader, TakesEveryKeyThatIsDocumented) {
    const ProjectReading reading = readText(R"([project]
name = "p"
comment = "c"
[[link]]
id = 7
name = "a"
hmiport = "ETHERNET1"
port = "tcp://host:4001"
baud = 9600
databits = 7
stopbits = 2
parity = "odd"
timeout = 100
retry = 0
delay = 0
[[link]]
name = "b"
port = "/dev/ttyS0"
[[node]]
station = 1
link = "a"
default = true
ip = "10.0.0.7"
port = 4001
comment = "c"
[[node]]
station = 2
link = "b"
[[tag]]
name = "bits"
address = "NA10.31"
count = 2
link = "a"
unit = "u"
comment = "c"
[[tag]]
name = "low"
address = "LOWLATENCY"
link = "b"
)");
    ASSERT_EQ(errorOf(reading), QStringList());
    const LinkDefinition& link = *reading->link(7);
    EXPECT_EQ(link.parity, DeviceSetting::OddParity);
    EXPECT_EQ(link.deviceSetting().stopbits, DeviceSetting::TwoStopBits);
    EXPECT_EQ(reading->nodes.first().ip, QStringLiteral("10.0.0.7"));
    EXPECT_EQ(reading->nodes.first().port, 4001);
    const TagDefinition& bits = *reading->tag(QStringLiteral("bits"));
    EXPECT_EQ(bits.type.data_type, CommunicatorCommand::Bit);
    EXPECT_EQ(bits.dwords(), 2);
    EXPECT_EQ(bits.command().address(), QStringLiteral("NA10.31"));
    EXPECT_EQ(bits.command().count(), 2);
    EXPECT_EQ(reading->tag(QStringLiteral("low"))->station, 2);
}

TEST(ProjectReader, AllowsTheLargestTagThatTheDriverServes) {
    QByteArray text = SmallProject;
    EXPECT_TRUE(readProjectText(text + "count = 255\n", QString()));
    EXPECT_FALSE(readProjectText(text + "count = 256\n", QString()));
}

TEST(ProjectReader, NamesAFileThatIsNotThere) {
    const ProjectReading reading = readProjectFile(QStringLiteral("/nowhere/panel.toml"));
    EXPECT_EQ(errorOf(reading),
              QStringList(QStringLiteral("/nowhere/panel.toml: No such file or directory")));
}

TEST(ProjectReader, ReadsTheSampleProject) {
    const ProjectReading reading =
        readProjectFile(QStringLiteral(TEST_DATA_DIR "/../../examples/furnace/panel.toml"));
    ASSERT_EQ(errorOf(reading), QStringList());
    EXPECT_EQ(reading->nodes.size(), 2);
    const TagDefinition* const last = reading->tag(QStringLiteral("Program 32"));
    ASSERT_TRUE(last);
    EXPECT_EQ(last->address.text, QStringLiteral("NA13E0"));
    EXPECT_EQ(last->dwords(), 24);
}
