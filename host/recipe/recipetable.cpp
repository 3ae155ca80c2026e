#include "host/recipe/recipetable.h"

namespace host {

namespace {

/** Those of @p count switches from @p first that are on, from 1; one that is
 *  neither 0 nor 1 shows its value. */
QString switchesText(const RecipeProgram& program, int first, int count) {
    QStringList on;
    for (int i = 0; i < count; ++i) {
        const quint32 value = program.value(first + i);
        if (value == 1)
            on.append(QString::number(i + 1));
        else if (value != 0)
            on.append(QStringLiteral("%1=%2").arg(i + 1).arg(value));
    }
    return on.isEmpty() ? QStringLiteral("-") : on.join(QLatin1Char(' '));
}

QString numberText(const RecipeProgram& program) {
    return program.number > 0 ? QString::number(program.number) : QStringLiteral("?");
}

QStringList segmentRow(const RecipeSegment& segment) {
    const RecipeProgram& program = segment.program;
    return {numberText(program),
            clockText(segment.start_s, true),
            clockText(segment.end_s - segment.start_s, true),
            QString::number(program.value(RecipeTemperature)),
            QStringLiteral("+%1 -%2")
                .arg(program.value(RecipeSoakPlus))
                .arg(program.value(RecipeSoakMinus)),
            QString::number(program.value(RecipePidGroup)),
            switchesText(program, RecipeFirstEvent, RecipeEvents),
            switchesText(program, RecipeFirstInput, RecipeInputs)};
}

} // namespace

QVector<QStringList> recipeTable(const QVector<RecipeProgram>& programs) {
    QVector<QStringList> rows;
    rows.append({QStringLiteral("PROGRAM"), QStringLiteral("START"), QStringLiteral("TIME"),
                 QStringLiteral("TEMP °C"), QStringLiteral("SOAK"), QStringLiteral("PID"),
                 QStringLiteral("EVENTS"), QStringLiteral("INPUTS")});
    const RecipeProfile profile = recipeProfile(programs, RecipeCourse::Step);
    int segment = 0;
    for (const RecipeProgram& program : programs) {
        if (program.isUnused())
            rows.append({numberText(program), QStringLiteral("-")});
        else
            rows.append(segmentRow(profile.segments[segment++]));
    }
    return rows;
}

} // namespace host
