#ifndef APPS_DMC50DEMO_TAGTABLE_H
#define APPS_DMC50DEMO_TAGTABLE_H

#include "host/session/panelsession.h"

/** One line of the live table. */
struct TagRow {
    host::TagDefinition tag;
    QString value;      // with its unit; empty: never read
    qint64 age_ms = -1; // since the station last answered; -1: never
    QString error;      // of the station, empty when it answers
    bool changed = false;
};

/** At most @p count of the project's tags for the table: single values of
 *  controllers, every station with its share, in the project's order. */
QVector<host::TagDefinition> tagsToShow(const host::Project& project, int count);

/** Reads @p tags through the driver. Values that differ from those in @p before,
 *  the last rows of the same tags, are marked as changed. */
QVector<TagRow> readRows(host::PanelSession& session, const QVector<host::TagDefinition>& tags,
                         const QVector<TagRow>& before);

/** Colours of a terminal; empty texts where there are none. */
struct Palette {
    const char* plain = "";
    const char* bold = "";
    const char* faint = "";
    const char* good = "";
    const char* bad = "";
    const char* changed = "";
};

/** The rows as lines of text, a head first, at most @p width characters wide. */
QStringList tableLines(const QVector<TagRow>& rows, int width, const Palette& palette);

#endif
