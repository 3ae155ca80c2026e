#ifndef HOST_PROJECT_PROJECTREADER_H
#define HOST_PROJECT_PROJECTREADER_H

#include "common/result.h"
#include "host/project/project.h"

#include <QStringList>

namespace host {

/** The file's name inside a project's folder. */
constexpr char ProjectFile[] = "panel.toml";

/** A project, or all that is wrong with its file: "file:line:column: text". */
using ProjectReading = Result<Project, QStringList>;

/** Reads and checks the file at @p path. A project that comes out can be given to
 *  the driver: it ends the program on a broken one. */
ProjectReading readProjectFile(const QString& path);

/** The same of a text; @p name stands for it in the errors. */
ProjectReading readProjectText(const QByteArray& text, const QString& name);

} // namespace host

#endif
