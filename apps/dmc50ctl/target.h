#ifndef APPS_DMC50CTL_TARGET_H
#define APPS_DMC50CTL_TARGET_H

#include "apps/dmc50ctl/options.h"
#include "host/project/project.h"
#include "host/transfer/recipejob.h"

#include <QSet>

/** What a command works on. */
struct Target {
    host::Project project;
    QVector<host::TagDefinition> tags;       // chosen by the command line, in its order
    QStringList values;                      // of write: the texts beside the tags
    std::optional<host::RecipeOrder> recipe; // of a transfer

    QSet<int> linkIds() const; // of the chosen tags
    bool needsWindows() const; // for the program transfer
};

/** Why there is no Target. */
struct TargetErrors {
    QStringList errors;
    int exit_status = 0; // that they lead to
};

using TargetReading = Result<Target, TargetErrors>;

/** Finds the project's tags, or makes a project of the plain addresses, with the
 *  command line's port and timing. */
TargetReading readTarget(const Options& options);

/** Makes the panel directory that the driver will use and returns its path: that
 *  of a built project as it stands, otherwise a fresh one in @p scratch. */
Result<QString> preparePanelDirectory(const Options& options, const host::Project& project,
                                      const QString& scratch);

#endif
