#include "host/recipe/recipeprofile.h"

#include <algorithm>
#include <cmath>

namespace host {

namespace {

constexpr qint64 Minute = 60;
constexpr qint64 Hour = 60 * Minute;
constexpr qint64 Day = 24 * Hour;

qint64 durationOf(const RecipeProgram& program) {
    return program.value(RecipeHours) * Hour + program.value(RecipeMinutes) * Minute +
           program.value(RecipeSeconds);
}

bool isEverOn(const QVector<RecipeSpan>& spans) {
    return std::any_of(spans.begin(), spans.end(),
                       [](const RecipeSpan& span) { return span.value != 0; });
}

} // namespace

double RecipeProfile::highest() const {
    double degrees = 0;
    for (const RecipeSegment& segment : segments)
        degrees = std::max({degrees, segment.from, segment.to});
    return degrees;
}

QVector<QPointF> RecipeProfile::curve() const {
    QVector<QPointF> points;
    for (const RecipeSegment& segment : segments) {
        points.append(QPointF(double(segment.start_s), segment.from));
        points.append(QPointF(double(segment.end_s), segment.to));
    }
    return points;
}

QVector<RecipeSpan> RecipeProfile::spans(int column) const {
    QVector<RecipeSpan> found;
    for (const RecipeSegment& segment : segments) {
        const quint32 value = segment.program.value(column);
        if (segment.end_s == segment.start_s)
            continue;
        if (!found.isEmpty() && found.last().value == value)
            found.last().end_s = segment.end_s;
        else
            found.append({segment.start_s, segment.end_s, value});
    }
    return found;
}

QVector<RecipeTrack> RecipeProfile::tracks() const {
    QVector<RecipeTrack> found;
    for (int column = RecipeFirstEvent; column < RecipeFields; ++column) {
        QVector<RecipeSpan> all = spans(column);
        if (!isEverOn(all))
            continue;
        all.erase(std::remove_if(all.begin(), all.end(),
                                 [](const RecipeSpan& span) { return span.value == 0; }),
                  all.end());
        found.append({column, all});
    }
    return found;
}

RecipeProfile recipeProfile(const QVector<RecipeProgram>& programs, RecipeCourse course) {
    RecipeProfile profile;
    for (const RecipeProgram& program : programs) {
        if (program.isUnused())
            continue;
        RecipeSegment segment;
        segment.program = program;
        segment.start_s = profile.durationSecs();
        segment.end_s = segment.start_s + durationOf(program);
        segment.to = program.value(RecipeTemperature);
        const bool ramps = course == RecipeCourse::Ramp && !profile.segments.isEmpty();
        segment.from = ramps ? profile.segments.last().to : segment.to;
        profile.segments.append(segment);
    }
    return profile;
}

QString clockText(qint64 seconds, bool with_seconds) {
    QString text = QStringLiteral("%1:%2")
                       .arg(seconds / Hour)
                       .arg(seconds % Hour / Minute, 2, 10, QLatin1Char('0'));
    if (with_seconds)
        text += QStringLiteral(":%1").arg(seconds % Minute, 2, 10, QLatin1Char('0'));
    return text;
}

double niceDistance(double end, int most) {
    const double least = std::max(end, 1.0) / std::max(most, 1);
    const double power = std::pow(10.0, std::floor(std::log10(least)));
    for (double factor : {1.0, 2.0, 5.0}) {
        if (factor * power >= least)
            return factor * power;
    }
    return 10 * power;
}

qint64 niceClockDistance(qint64 end_s, int most) {
    const double least = double(end_s) / std::max(most, 1);
    for (qint64 distance : {qint64(1), qint64(2), qint64(5), qint64(10), qint64(15), qint64(30),
                            Minute, 2 * Minute, 5 * Minute, 10 * Minute, 15 * Minute, 30 * Minute,
                            Hour, 2 * Hour, 3 * Hour, 6 * Hour, 12 * Hour, Day}) {
        if (double(distance) >= least)
            return distance;
    }
    return qint64(niceDistance(double(end_s) / double(Day), most)) * Day;
}

} // namespace host
