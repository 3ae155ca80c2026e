#ifndef HOST_PROJECT_SPELLING_H
#define HOST_PROJECT_SPELLING_H

#include <QString>
#include <QStringList>

namespace host {

/** The one of @p candidates that @p text most probably was meant to be, whatever
 *  its capitals; empty when none is near. */
QString nearestSpelling(const QString& text, const QStringList& candidates);

/** "; did you mean 'X'?" with the nearest candidate, else "; known are A, B". */
QString spellingHint(const QString& text, const QStringList& candidates);

} // namespace host

#endif
