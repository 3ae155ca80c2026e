#ifndef HOST_RECIPE_RECIPEFINDING_H
#define HOST_RECIPE_RECIPEFINDING_H

#include <QString>
#include <QVector>

namespace host {

/** What comes of a finding when the file is sent to a controller. */
enum class RecipeSeverity {
    Note,    // nothing
    Warning, // the driver takes the file, but not for what it says
    Refused  // the driver refuses the whole file
};

/** Something in a program file that is not as it should be. */
struct RecipeFinding {
    RecipeSeverity severity = RecipeSeverity::Note;
    int line = 0;  // of the file, from 1; 0: the file as a whole
    int field = 0; // of the line, from 1; 0: the line as a whole
    int row = -1;  // as the driver's error log counts: lines of programs from 0; -1: none
    QString text;  // of the field
    QString reason;

    /** As the driver's error log counts: the values from 1, the label 0; -1: none. */
    int column() const { return field - 1; }
};

using RecipeFindings = QVector<RecipeFinding>;

/** "note", "warning" or "refused". */
QString severityName(RecipeSeverity severity);

/** One line of text that begins as compilers do, "file:line:field: ", so that
 *  editors find the place; where the driver names a place, it ends with that. */
QString findingText(const QString& file, const RecipeFinding& finding);

} // namespace host

#endif
