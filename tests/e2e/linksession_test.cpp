// The host's own access to a link, with the built plug-in and a simulator: what
// dmc50ctl does not do, writing while other stations are kept fresh.
#include "tests/e2e/programs.h"

#include "host/project/paneldirectory.h"
#include "host/project/projectreader.h"
#include "host/session/panelsession.h"
#include "host/session/tagvalue.h"
#include "tests/support/errorof.h"

#include <gtest/gtest.h>

using namespace host;

namespace {

/** The sample project at work on a simulated line. */
class LinkAtWork : public ::testing::Test {
protected:
    void SetUp() override {
        const QString panel = m_directory.filePath(QStringLiteral("panel"));
        ASSERT_EQ(errorOf(buildPanelDirectory(QStringLiteral(SAMPLE_PROJECT), panel)),
                  QStringList());
        setPanelDirectory(panel);
        m_project =
            *readProjectFile(QStringLiteral(SAMPLE_PROJECT) + QStringLiteral("/panel.toml"));
        m_project.links[0].port = m_line.port();
        m_project.links[0].timeout_ms = 3000; // the least that the driver gives a silent station
        m_project.links[0].retries = 0;
        auto plugin = DriverPlugin::load(QStringLiteral(PLUGIN_FILE));
        ASSERT_EQ(errorOf(plugin), QString());
        m_plugin = std::move(*plugin);
        auto session = PanelSession::open(m_project, {1}, *m_plugin, PanelSetup());
        ASSERT_EQ(errorOf(session), QString());
        m_session = std::move(*session);
    }

    TagDefinition tag(const char* name) const { return *m_project.tag(QLatin1String(name)); }

    TagResult write(const TagDefinition& tag, int value) {
        return m_session->link(1).write(tag, *parseValue(tag, QString::number(value)));
    }

    QTemporaryDir m_directory;
    SimulatedLine m_line{{QStringLiteral("--stations"), QStringLiteral("1,2")}};
    Project m_project;
    std::unique_ptr<DriverPlugin> m_plugin;
    std::unique_ptr<PanelSession> m_session; // ends before the line
};

} // namespace

TEST_F(LinkAtWork, WritesToOneStationWhileAnotherIsSilent) {
    const TagDefinition set_point = tag("Zone 1 set point");
    m_session->poll({set_point, tag("Gas flow")}); // most requests are to the silent station
    EXPECT_EQ(write(set_point, 1).error.toStdString(), std::string());
    m_line.command("station 2 silent");
    while (m_session->link(1).stationError(2).isEmpty())
        m_session->observe(10);
    for (int value = 850; value < 852; ++value) {
        EXPECT_EQ(write(set_point, value).error.toStdString(), std::string());
        EXPECT_EQ(m_line.memory(1, 0x101001), quint32(value));
    }
    m_line.command("station 2 ok");
    while (!m_session->link(1).stationError(2).isEmpty()) // it is polled again
        m_session->observe(10);
}
