#ifndef RUNTIME_INTERFACES_PROJECTFILES_H
#define RUNTIME_INTERFACES_PROJECTFILES_H

#include <QString>

/** What the writer of a panel project and the drivers that read it agree on:
 *  where the database is, and how it numbers the panel's ports. */

/** Folders and file below the application's directory. */
const char CompileFolder[] = "compile";
const char DatabaseFolder[] = "database";
const char DatabaseFile[] = "database";

/** Property of the application object that, where a host sets it, stands in for
 *  the application's directory: a PC host runs projects from any folder. */
const char ApplicationDirProperty[] = "PanelApplicationDir";

/** Column HMIPORT: COM1, and every Ethernet port. */
const int FirstSerialHmiPort = 1000;
const int EthernetHmiPort = 2000;

/** Where the writer puts the database of the panel directory @p directory. */
inline QString projectDatabasePath(const QString& directory) {
    const char* const steps[] = {CompileFolder, DatabaseFolder, DatabaseFile};
    QString path = directory;
    for (const char* step : steps)
        path += QLatin1Char('/') + QString::fromLatin1(step);
    return path;
}

#endif
