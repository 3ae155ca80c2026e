#include "host/recipe/recipechart.h"

#include <algorithm>
#include <cmath>

namespace host {

namespace {

constexpr int FewestColumns = 30; // of a chart; a narrower terminal wraps it
constexpr int FewestRows = 4;
constexpr int RowsPerMark = 2; // of the temperature scale, at least
constexpr int TopSteps = 4;    // of the scale's end, between two marks
constexpr int TimeMarkGap = 2; // blanks between two time marks, at least
constexpr ushort FirstBraille = 0x2800;

/** The characters that a chart is made of. */
struct ChartLetters {
    QChar vertical, marked_vertical, corner, horizontal, marked_horizontal;
    int dots_across, dots_up; // in one character
};

ChartLetters lettersOf(bool unicode) {
    if (unicode)
        return {QChar(0x2502), QChar(0x2524), QChar(0x2514), QChar(0x2500), QChar(0x252C), 2, 4};
    return {QLatin1Char('|'),
            QLatin1Char('+'),
            QLatin1Char('+'),
            QLatin1Char('-'),
            QLatin1Char('+'),
            1,
            1};
}

/** Dots on a field of characters, (0, 0) at the lower left. */
class DotField {
public:
    DotField(int columns, int rows, const ChartLetters& letters)
        : m_letters(letters)
        , m_columns(columns)
        , m_rows(rows)
        , m_dots(std::size_t(columns) * std::size_t(rows), 0) {}

    int dotsAcross() const { return m_columns * m_letters.dots_across; }
    int dotsUp() const { return m_rows * m_letters.dots_up; }

    /** Both ends lie on the field. */
    void drawLine(int from_x, int from_y, int to_x, int to_y);

    /** Row 0 is the uppermost. */
    QString row(int index) const;

private:
    void set(int x, int y);

    const ChartLetters m_letters;
    const int m_columns;
    const int m_rows;
    std::vector<ushort> m_dots; // of each character, row by row from the top
};

void DotField::set(int x, int y) {
    // A Braille letter's dots by column and height; seven and eight are the lowest.
    static constexpr ushort bits[2][4] = {{0x40, 0x04, 0x02, 0x01}, {0x80, 0x20, 0x10, 0x08}};
    const int row = m_rows - 1 - y / m_letters.dots_up;
    const int place = row * m_columns + x / m_letters.dots_across;
    m_dots[std::size_t(place)] |= bits[x % m_letters.dots_across][y % m_letters.dots_up];
}

void DotField::drawLine(int from_x, int from_y, int to_x, int to_y) {
    const int steps = std::max({std::abs(to_x - from_x), std::abs(to_y - from_y), 1});
    for (int i = 0; i <= steps; ++i) {
        const double part = double(i) / steps;
        set(int(std::lround(from_x + part * (to_x - from_x))),
            int(std::lround(from_y + part * (to_y - from_y))));
    }
}

QString DotField::row(int index) const {
    QString text;
    for (int column = 0; column < m_columns; ++column) {
        const ushort dots =
            m_dots[std::size_t(index) * std::size_t(m_columns) + std::size_t(column)];
        if (dots == 0)
            text += QLatin1Char(' ');
        else
            text += m_letters.dots_up > 1 ? QChar(ushort(FirstBraille + dots)) : QLatin1Char('*');
    }
    return text;
}

/** The scales and the curve of one chart. */
class Chart {
public:
    Chart(const RecipeProfile& profile, const RecipeChartStyle& style);
    QStringList lines() const;

private:
    void drawCurve(DotField& field) const;
    int markedRow(double degrees) const;
    QString temperatureMark(int row) const;
    void appendTimeScale(QStringList& lines) const;

    const RecipeProfile& m_profile;
    const ChartLetters m_letters;
    const int m_rows;
    double m_mark_distance; // degrees
    double m_top;           // degrees
    int m_margin;           // columns of the temperature scale's numbers
    int m_columns;          // of the curve
};

Chart::Chart(const RecipeProfile& profile, const RecipeChartStyle& style)
    : m_profile(profile)
    , m_letters(lettersOf(style.unicode))
    , m_rows(std::max(style.rows, FewestRows))
    , m_mark_distance(niceDistance(profile.highest(), m_rows / RowsPerMark)) {
    const double fine = m_mark_distance / TopSteps;
    m_top = std::max(1.0, std::ceil(profile.highest() / fine)) * fine;
    m_margin = QString::number(m_top, 'f', 0).size();
    m_columns = std::max(style.columns, FewestColumns) - m_margin - 2;
}

void Chart::drawCurve(DotField& field) const {
    const double across = (field.dotsAcross() - 1) / double(m_profile.durationSecs());
    const double up = (field.dotsUp() - 1) / m_top;
    const QVector<QPointF> points = m_profile.curve();
    for (int i = 1; i < points.size(); ++i)
        field.drawLine(
            int(std::lround(points[i - 1].x() * across)), int(std::lround(points[i - 1].y() * up)),
            int(std::lround(points[i].x() * across)), int(std::lround(points[i].y() * up)));
}

/** The row in which the curve runs at that temperature; row 0 is the uppermost. */
int Chart::markedRow(double degrees) const {
    const int dots = m_rows * m_letters.dots_up;
    return m_rows - 1 - int(std::lround(degrees / m_top * (dots - 1))) / m_letters.dots_up;
}

/** The number beside a row of the curve; empty for most. */
QString Chart::temperatureMark(int row) const {
    for (double degrees = 0; degrees <= m_top; degrees += m_mark_distance) {
        if (markedRow(degrees) == row)
            return QString::number(degrees, 'f', 0);
    }
    return QString();
}

void Chart::appendTimeScale(QStringList& lines) const {
    const qint64 duration = m_profile.durationSecs();
    const bool with_seconds = duration < 10 * 60;
    const int widest = clockText(duration, with_seconds).size();
    const qint64 distance = niceClockDistance(duration, m_columns / (widest + TimeMarkGap));
    QString scale(m_columns, m_letters.horizontal);
    QString marks;
    for (qint64 time = 0; time <= duration; time += distance) {
        const int column = int(double(time) / double(duration) * (m_columns - 1));
        const QString mark = clockText(time, with_seconds);
        scale[column] = m_letters.marked_horizontal;
        const int place = std::min(column, m_columns - mark.size());
        if (marks.isEmpty() || marks.size() < place)
            marks = marks.leftJustified(place) + mark;
    }
    lines.append(QString(m_margin + 1, QLatin1Char(' ')) + m_letters.corner + scale);
    lines.append(QString(m_margin + 2, QLatin1Char(' ')) + marks);
}

QStringList Chart::lines() const {
    DotField field(m_columns, m_rows, m_letters);
    drawCurve(field);
    QStringList lines;
    for (int row = 0; row < m_rows; ++row) {
        const QString mark = temperatureMark(row);
        QString line = mark.rightJustified(m_margin) + QLatin1Char(' ') +
                       (mark.isEmpty() ? m_letters.vertical : m_letters.marked_vertical) +
                       field.row(row);
        while (line.endsWith(QLatin1Char(' ')))
            line.chop(1);
        lines.append(line);
    }
    appendTimeScale(lines);
    return lines;
}

} // namespace

QStringList recipeChart(const RecipeProfile& profile, const RecipeChartStyle& style) {
    return profile.durationSecs() > 0 ? Chart(profile, style).lines() : QStringList();
}

} // namespace host
