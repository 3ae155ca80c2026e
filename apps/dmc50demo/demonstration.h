#ifndef APPS_DMC50DEMO_DEMONSTRATION_H
#define APPS_DMC50DEMO_DEMONSTRATION_H

#include "apps/dmc50demo/screen.h"
#include "host/project/project.h"
#include "host/session/driverplugin.h"
#include "host/session/panelsession.h"
#include "host/transfer/paneloperator.h"
#include "simulator/line.h"

#include <functional>
#include <memory>

/** The sample project on a simulated line, step by step. Each step checks that what
 *  it says has happened, in the simulated controller where it can.
 *
 *  Thread: prepare() the GUI thread, run() a communication thread, as in the
 *  panel's runtime. */
class Demonstration {
public:
    /** A @p brisk one does not wait for the viewer. @p stick is the folder that serves
     *  this process as its USB stick, or why none does. */
    Demonstration(Screen& screen, bool brisk, const Result<QString>& stick)
        : m_screen(screen), m_brisk(brisk), m_stick(stick) {}

    /** Compiles the project folder into the panel directory, starts the line and
     *  loads the driver @p plugin_path. False when a step failed, which the viewer has
     *  been told. */
    bool prepare(const QString& project_directory, const QString& panel_directory,
                 const QString& plugin_path);

    /** The rest; the same result. */
    bool run();

private:
    /** An error says what did not happen. */
    using Outcome = Result<void>;

    Outcome compile(const QString& project_directory, const QString& panel_directory);
    Outcome startLine();
    Outcome loadDriver(const QString& path);
    Outcome openSession();
    Outcome showValues();
    Outcome writeValue();
    Outcome silenceStation();
    Outcome recoverStation();
    Outcome transferRecipes();
    void summarize();

    bool succeeds(const Outcome& outcome);
    void look();
    void letViewerLook(int msecs);
    bool lookUntil(int msecs, const std::function<bool()>& condition);
    QString stationError(int station);
    quint32 memory(const host::TagDefinition& tag) const;

    int valuesUnlike(const QVector<TagRow>& before) const;

    Screen& m_screen;
    const bool m_brisk;
    const Result<QString> m_stick;
    host::Project m_project;
    std::unique_ptr<simulator::Line> m_line;
    std::unique_ptr<host::DriverPlugin> m_plugin;
    std::unique_ptr<host::PanelOperator> m_operator;
    std::unique_ptr<host::PanelSession> m_session;
    QVector<host::TagDefinition> m_tags; // in the table
    QVector<TagRow> m_rows;              // as last shown
    host::LineStatistics m_calm;         // of the seconds without a fault
    qint64 m_calm_msecs = 0;
};

#endif
