#ifndef TESTS_E2E_SAMPLEPROJECT_H
#define TESTS_E2E_SAMPLEPROJECT_H

#include "host/project/paneldirectory.h"
#include "host/project/projectreader.h"
#include "host/session/panelsession.h"
#include "tests/e2e/programs.h"
#include "tests/support/errorof.h"

#include <gtest/gtest.h>

/** The sample project with the built plug-in on a simulated line, in a host of our
 *  own. */
class SampleProject : public ::testing::Test {
protected:
    void SetUp() override {
        const QString panel = panelDirectory();
        ASSERT_EQ(errorOf(host::buildPanelDirectory(QStringLiteral(SAMPLE_PROJECT), panel)),
                  QStringList());
        host::setPanelDirectory(panel);
        m_project =
            *host::readProjectFile(QStringLiteral(SAMPLE_PROJECT) + QStringLiteral("/panel.toml"));
        m_project.links[0].port = m_line.port();
        m_project.links[0].timeout_ms = 3000; // the least that the driver gives a silent station
        m_project.links[0].retries = 0;
        auto plugin = host::DriverPlugin::load(QStringLiteral(PLUGIN_FILE));
        ASSERT_EQ(errorOf(plugin), QString());
        m_plugin = std::move(*plugin);
        auto session = host::PanelSession::open(m_project, {1}, *m_plugin, host::PanelSetup());
        ASSERT_EQ(errorOf(session), QString());
        m_session = std::move(*session);
    }

    QString panelDirectory() const { return m_directory.filePath(QStringLiteral("panel")); }

    host::TagDefinition tag(const char* name) const { return *m_project.tag(QLatin1String(name)); }

    QTemporaryDir m_directory;
    SimulatedLine m_line{{QStringLiteral("--stations"), QStringLiteral("1,2")}};
    host::Project m_project;
    std::unique_ptr<host::DriverPlugin> m_plugin;
    std::unique_ptr<host::PanelSession> m_session; // ends before the line
};

#endif
