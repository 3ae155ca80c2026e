#ifndef APPS_DMC50DEMO_RECIPEACT_H
#define APPS_DMC50DEMO_RECIPEACT_H

#include "apps/dmc50demo/screen.h"
#include "host/session/panelsession.h"
#include "host/transfer/paneloperator.h"
#include "host/transfer/recipejob.h"
#include "simulator/line.h"

/** The demo's last act: programs go from the simulated controller to a stick and
 *  back. An error of a step says what did not happen. Thread: the link's. */
class RecipeAct {
public:
    /** @p stick is the folder that serves this process as its USB stick. */
    RecipeAct(Screen& screen, host::PanelSession& session, const host::Project& project,
              const simulator::Line& line, host::PanelOperator& panel, const QString& stick);

    Result<void> pull();
    Result<void> pushEdited();
    Result<void> pushBad();

private:
    using Memory = QVector<quint32>; // of all programs, one after the other

    host::RecipeReport transfer(host::RecipeReport (host::RecipeJob::*what)(), int count);
    Memory memory() const;
    QString path() const;

    Screen& m_screen;
    host::PanelSession& m_session;
    const simulator::Line& m_line;
    host::PanelOperator& m_panel;
    const host::RecipeSlots m_slots; // of the project's first link with programs
    const QString m_stick;
};

#endif
