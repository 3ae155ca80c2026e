#ifndef APPS_DMC50DEMO_RECIPEACT_H
#define APPS_DMC50DEMO_RECIPEACT_H

#include "apps/dmc50demo/screen.h"
#include "host/session/panelsession.h"
#include "host/transfer/paneloperator.h"
#include "host/transfer/recipejob.h"
#include "simulator/line.h"

/** The demo's last act: programs go from the simulated controller to a stick and
 *  back. Each step returns empty, or what did not happen. Thread: the link's. */
class RecipeAct {
public:
    /** @p stick is the folder that serves this process as its USB stick. */
    RecipeAct(Screen& screen, PanelSession& session, const Project& project,
              const simulator::Line& line, PanelOperator& panel, const QString& stick);

    QString pull();
    QString pushEdited();
    QString pushBad();

private:
    using Memory = QVector<quint32>; // of all programs, one after the other

    RecipeReport transfer(RecipeReport (RecipeJob::*what)(), int count);
    Memory memory() const;
    QString path() const;

    Screen& m_screen;
    PanelSession& m_session;
    const simulator::Line& m_line;
    PanelOperator& m_panel;
    const RecipeSlots m_slots; // of the project's first link with programs
    const QString m_stick;
};

#endif
