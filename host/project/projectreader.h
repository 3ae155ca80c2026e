#ifndef HOST_PROJECT_PROJECTREADER_H
#define HOST_PROJECT_PROJECTREADER_H

#include "host/project/project.h"

#include <QStringList>

#include <optional>

namespace host {

/** The file's name inside a project's folder. */
constexpr char PROJECT_FILE[] = "panel.toml";

/** What came of reading a project file. */
struct ProjectReading {
    std::optional<Project> project;
    QStringList errors; // "file:line:column: text"; empty exactly when there is a project
};

/** Reads and checks the file at @p path. A project that comes out can be given to
 *  the driver: it ends the program on a broken one. */
ProjectReading readProjectFile(const QString& path);

/** The same of a text; @p name stands for it in the errors. */
ProjectReading readProjectText(const QByteArray& text, const QString& name);

} // namespace host

#endif
