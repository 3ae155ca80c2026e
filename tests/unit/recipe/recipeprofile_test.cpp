#include "host/recipe/recipeprofile.h"

#include "host/recipe/recipechart.h"
#include "host/recipe/recipepicture.h"
#include "host/recipe/recipetable.h"

#include <gtest/gtest.h>

using namespace host;

namespace {

RecipeProgram program(int number, quint32 degrees, quint32 minutes, quint32 pid_group = 1) {
    RecipeProgram made;
    made.number = number;
    made.values[RecipeTemperature - 1] = degrees;
    made.values[RecipeHours - 1] = minutes / 60;
    made.values[RecipeMinutes - 1] = minutes % 60;
    made.values[RecipePidGroup - 1] = pid_group;
    return made;
}

RecipeProgram with(RecipeProgram made, int column, quint32 value) {
    made.values[std::size_t(column) - 1] = value;
    return made;
}

/** Up to 600 degrees, a soak, and down. */
QVector<RecipeProgram> firing() {
    return {with(program(1, 100, 30), RecipeFirstEvent, 1),
            with(program(2, 600, 60, 2), RecipeFirstEvent, 1), program(3, 600, 60, 2),
            with(program(4, 0, 30), RecipeFirstInput + 3, 1)};
}

RecipeProfile ramps(const QVector<RecipeProgram>& programs) {
    return recipeProfile(programs, RecipeCourse::Ramp);
}

std::string joined(const QStringList& lines) {
    return lines.join(QLatin1Char('\n')).toStdString();
}

/** Pixels of the curve's colour in each tenth of the picture's width. */
QVector<int> curvePixels(const QImage& picture) {
    QVector<int> found(10, 0);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            found[x * 10 / picture.width()] += picture.pixel(x, y) == RecipeCurveColor;
    }
    return found;
}

} // namespace

TEST(RecipeProfile, RampsFromOneSetTemperatureToTheNext) {
    EXPECT_EQ(ramps(firing()).curve(), (QVector<QPointF>{{0, 100},
                                                         {1800, 100},
                                                         {1800, 100},
                                                         {5400, 600},
                                                         {5400, 600},
                                                         {9000, 600},
                                                         {9000, 600},
                                                         {10800, 0}}));
}

TEST(RecipeProfile, StepsAtTheBeginningOfAProgram) {
    EXPECT_EQ(recipeProfile({program(1, 100, 1), program(2, 300, 1)}, RecipeCourse::Step).curve(),
              (QVector<QPointF>{{0, 100}, {60, 100}, {60, 300}, {120, 300}}));
}

TEST(RecipeProfile, AProgramWithoutTimeIsAStepOfTheRamp) {
    EXPECT_EQ(ramps({program(1, 100, 1), program(2, 300, 0), program(3, 300, 1)}).curve(),
              (QVector<QPointF>{{0, 100}, {60, 100}, {60, 100}, {60, 300}, {60, 300}, {120, 300}}));
}

TEST(RecipeProfile, LeavesUnusedProgramsOut) {
    const RecipeProfile profile = ramps({program(1, 100, 1), RecipeProgram(), program(3, 50, 1)});
    ASSERT_EQ(profile.segments.size(), 2);
    EXPECT_EQ(profile.segments[1].program.number, 3);
    EXPECT_EQ(profile.durationSecs(), 120);
}

TEST(RecipeProfile, AddsUpEvenTheLongestTimes) {
    RecipeProgram longest = program(1, 1, 0);
    for (int column : {RecipeHours, RecipeMinutes, RecipeSeconds})
        longest = with(longest, column, 0xFFFFFFFF);
    EXPECT_EQ(ramps({longest}).durationSecs(), 4294967295LL * 3661);
    EXPECT_EQ(recipeChart(ramps({longest}), {}).size(), 18);
}

TEST(RecipeProfile, JoinsNeighboursWithTheSameValue) {
    const QVector<RecipeSpan> groups = ramps(firing()).spans(RecipePidGroup);
    ASSERT_EQ(groups.size(), 3);
    EXPECT_EQ(groups[1].start_s, 1800);
    EXPECT_EQ(groups[1].end_s, 9000);
    EXPECT_EQ(groups[1].value, 2u);
}

TEST(RecipeProfile, TracksShowOnlyWhatIsEverOn) {
    const QVector<RecipeTrack> tracks = ramps(firing()).tracks();
    ASSERT_EQ(tracks.size(), 2);
    EXPECT_EQ(tracks[0].column, int(RecipeFirstEvent));
    ASSERT_EQ(tracks[0].spans.size(), 1);
    EXPECT_EQ(tracks[0].spans[0].end_s, 5400);
    EXPECT_EQ(tracks[1].column, RecipeFirstInput + 3);
}

TEST(RecipeProfile, MarksScalesWithReadableDistances) {
    EXPECT_EQ(niceDistance(1080, 8), 200);
    EXPECT_EQ(niceDistance(0, 8), 0.2);
    EXPECT_EQ(niceClockDistance(10800, 10), 1800);
    EXPECT_EQ(niceClockDistance(60, 10), 10);
    EXPECT_EQ(niceClockDistance(100 * 86400, 10), 10 * 86400);
}

TEST(RecipeChart, FitsItsWidthAndNamesItsScales) {
    const QStringList chart = recipeChart(ramps(firing()), {40, 6, false});
    EXPECT_EQ(joined(chart), "600 +                *************\n"
                             "    |             ***             *\n"
                             "400 +           **                 **\n"
                             "200 +        ***                     *\n"
                             "    |********                         *\n"
                             "  0 +                                  *\n"
                             "    ++----------+----------+-----------+\n"
                             "     0:00       1:00       2:00     3:00");
}

TEST(RecipeChart, DrawsBrailleDots) {
    const QStringList chart = recipeChart(ramps(firing()), {30, 4, true});
    EXPECT_EQ(joined(chart), "500 ┤           ⡠⠔⠒⠒⠒⠒⠒⠒⠒⠒⡄\n"
                             "    │        ⣀⠔⠊          ⠘⡄\n"
                             "    │     ⢀⠔⠊              ⠈⢆\n"
                             "  0 ┤⠒⠒⠒⠒⠊⠁                 ⠈⢆\n"
                             "    └┬───────┬───────┬───────┬\n"
                             "     0:00    1:00    2:00 3:00");
}

TEST(RecipeChart, NoLineIsWiderThanTheTerminal) {
    for (int columns : {30, 47, 80, 200}) {
        for (const QString& line : recipeChart(ramps(firing()), {columns, 16, true}))
            EXPECT_LE(line.size(), columns) << qPrintable(line);
    }
}

TEST(RecipeChart, IsEmptyWhereNoProgramTakesTime) {
    EXPECT_TRUE(recipeChart(ramps({}), {}).isEmpty());
    EXPECT_TRUE(recipeChart(ramps({program(1, 100, 0)}), {}).isEmpty());
}

TEST(RecipeTable, ShowsEachProgramOnOneLine) {
    const RecipeProgram odd =
        with(with(program(2, 600, 61), RecipeFirstEvent + 5, 7), RecipeSoakPlus, 10);
    const QVector<QStringList> rows = recipeTable({firing()[0], odd, RecipeProgram()});
    ASSERT_EQ(rows.size(), 4);
    EXPECT_EQ(joined(rows[0]), "PROGRAM\nSTART\nTIME\nTEMP °C\nSOAK\nPID\nEVENTS\nINPUTS");
    EXPECT_EQ(joined(rows[1]), "1\n0:00:00\n0:30:00\n100\n+0 -0\n1\n1\n-");
    EXPECT_EQ(joined(rows[2]), "2\n0:30:00\n1:01:00\n600\n+10 -0\n1\n6=7\n-");
    EXPECT_EQ(joined(rows[3]), "?\n-");
}

TEST(RecipePicture, ShowsTheCurveFromItsBeginningToItsEnd) {
    const QImage picture = recipePicture(ramps(firing()), QStringLiteral("firing"));
    ASSERT_EQ(picture.size(), QSize(1400, 900));
    const QVector<int> pixels = curvePixels(picture);
    for (int tenth = 2; tenth < 9; ++tenth)
        EXPECT_GT(pixels[tenth], 100) << tenth;
}

TEST(RecipePicture, TheCurveStandsHigherWhereItIsHotter) {
    const QImage picture =
        recipePicture(ramps({program(1, 100, 60), program(2, 900, 0), program(3, 900, 60)}),
                      QStringLiteral("step"));
    const auto heightAt = [&](int x) {
        for (int y = picture.height() - 1; y > 0; --y) {
            if (picture.pixel(x, y) == RecipeCurveColor)
                return y;
        }
        return -1;
    };
    ASSERT_GT(heightAt(picture.width() / 4), 0);
    EXPECT_GT(heightAt(picture.width() / 4), heightAt(picture.width() * 3 / 4) + 300);
}

TEST(RecipePicture, IsNullWhereNoProgramTakesTime) {
    EXPECT_TRUE(recipePicture(ramps({}), QString()).isNull());
}
