#ifndef HOST_RECIPE_RECIPEPROFILE_H
#define HOST_RECIPE_RECIPEPROFILE_H

#include "host/recipe/recipecheck.h"

#include <QPointF>

namespace host {

/** How the set temperature goes from one program to the next. */
enum class RecipeCourse {
    Ramp, // evenly, over the whole time of the program that asks for it
    Step  // at once, when that program begins
};

/** One program in the course of the furnace. */
struct RecipeSegment {
    RecipeProgram program;
    qint64 start_s = 0;
    qint64 end_s = 0;
    double from = 0; // degrees
    double to = 0;
};

/** A stretch of time in which something keeps its value. */
struct RecipeSpan {
    qint64 start_s = 0;
    qint64 end_s = 0;
    quint32 value = 0;
};

/** An event or an input that some program uses, and when it is on. */
struct RecipeTrack {
    int column = 0;
    QVector<RecipeSpan> spans;
};

/** The programs of a file one after the other, without the unused ones. */
struct RecipeProfile {
    QVector<RecipeSegment> segments;

    qint64 durationSecs() const { return segments.isEmpty() ? 0 : segments.last().end_s; }
    double highest() const; // degrees; 0 without segments

    /** The set temperature: seconds across, degrees up. */
    QVector<QPointF> curve() const;

    /** The values of @p column: neighbours with the same one are one span. */
    QVector<RecipeSpan> spans(int column) const;

    /** The events and inputs that are ever on, in the file's order. */
    QVector<RecipeTrack> tracks() const;
};

/** Where the furnace starts is not in the file: the first program begins at its
 *  own temperature. */
RecipeProfile recipeProfile(const QVector<RecipeProgram>& programs, RecipeCourse course);

/** Seconds as h:mm, with @p with_seconds as h:mm:ss. */
QString clockText(qint64 seconds, bool with_seconds);

/** Distance of the marks on a scale from 0 to @p end that has room for @p most of
 *  them: 1, 2 or 5 times a power of ten. */
double niceDistance(double end, int most);

/** The same for seconds: what clocks and calendars count in. */
qint64 niceClockDistance(qint64 end_s, int most);

} // namespace host

#endif
