#include "host/recipe/recipeplots.h"

#include "host/recipe/recipepicture.h"

#include <qwt_legend.h>
#include <qwt_plot.h>
#include <qwt_plot_curve.h>
#include <qwt_plot_grid.h>
#include <qwt_plot_intervalcurve.h>
#include <qwt_plot_layout.h>
#include <qwt_plot_marker.h>
#include <qwt_plot_zoneitem.h>
#include <qwt_scale_draw.h>
#include <qwt_scale_map.h>
#include <qwt_scale_widget.h>

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace host {

namespace {

constexpr int MostTimeMarks = 14;
constexpr int MostTemperatureMarks = 8;
constexpr double Headroom = 1.16;         // above the highest temperature, for the labels
constexpr double PidLabelHeight = 1.12;   // of the highest temperature; of the PID groups'
constexpr double LabelHeight = 1.05;      // likewise, of the programs'
constexpr double NarrowestNumber = 0.018; // of the picture's width
constexpr double NarrowestLabel = 0.045;
constexpr double NarrowestPidLabel = 0.04;
constexpr int TitleGap = 10;

const QColor GridColor(0xD5, 0xDB, 0xDF);
const QColor BandColors[] = {QColor(0xF3, 0xF6, 0xF9), QColor(0xE1, 0xEA, 0xF2)};
const QColor SoakColor(0xC6, 0x28, 0x28, 60);
const QColor EventColor(0x1F, 0x77, 0xB4);
const QColor InputColor(0x7B, 0x4F, 0x9E);
const QColor FaintText(0x60, 0x7D, 0x8B);

/** Hours and minutes on a scale of seconds. */
class ClockScaleDraw : public QwtScaleDraw {
public:
    explicit ClockScaleDraw(bool with_seconds) : m_with_seconds(with_seconds) {}
    QwtText label(double value) const override { return clockText(qint64(value), m_with_seconds); }

private:
    const bool m_with_seconds;
};

/** Degrees without the thousands' separators of some languages. */
class DegreeScaleDraw : public QwtScaleDraw {
public:
    QwtText label(double value) const override { return QString::number(value, 'f', 0); }
};

/** The tracks' titles; track i stands at i from the top. */
class TrackScaleDraw : public QwtScaleDraw {
public:
    explicit TrackScaleDraw(const QVector<RecipeTrack>& tracks) {
        for (const RecipeTrack& track : tracks)
            m_titles.append(recipeTitles().at(track.column));
        enableComponent(Ticks, false);
        enableComponent(Backbone, false);
    }
    QwtText label(double value) const override { return m_titles.value(int(std::lround(value))); }

private:
    QStringList m_titles;
};

/** The bars of all tracks. */
class TrackItem : public QwtPlotItem {
public:
    explicit TrackItem(const QVector<RecipeTrack>& tracks) : m_tracks(tracks) { setZ(2); }

    void draw(QPainter* painter, const QwtScaleMap& time, const QwtScaleMap& place,
              const QRectF&) const override {
        const double half_height = 0.32;
        for (int i = 0; i < m_tracks.size(); ++i) {
            const bool is_event = m_tracks[i].column < RecipeFirstInput;
            for (const RecipeSpan& span : m_tracks[i].spans) {
                const QRectF bar(
                    QPointF(time.transform(double(span.start_s)), place.transform(i - half_height)),
                    QPointF(time.transform(double(span.end_s)), place.transform(i + half_height)));
                painter->fillRect(bar.normalized(), is_event ? EventColor : InputColor);
            }
        }
    }

private:
    const QVector<RecipeTrack> m_tracks;
};

void addGrid(QwtPlot& plot, bool with_levels) {
    QwtPlotGrid* const grid = new QwtPlotGrid;
    grid->setMajorPen(GridColor, 1);
    grid->enableY(with_levels);
    grid->setZ(1);
    grid->attach(&plot);
}

void setTitle(QwtPlot& plot, QwtPlot::Axis axis, const QString& words) {
    QwtText title(words);
    title.setFont(plot.font());
    plot.setAxisTitle(axis, title);
}

void setTimeScale(QwtPlot& plot, const RecipeProfile& profile) {
    const qint64 duration = profile.durationSecs();
    const qint64 distance = niceClockDistance(duration, MostTimeMarks);
    const bool with_seconds = distance % 60 != 0;
    QList<double> marks;
    for (qint64 time = 0; time <= duration; time += distance)
        marks.append(double(time));
    plot.setAxisScaleDraw(QwtPlot::xBottom, new ClockScaleDraw(with_seconds));
    plot.setAxisScaleDiv(QwtPlot::xBottom, QwtScaleDiv(0, double(duration), {}, {}, marks));
    setTitle(plot, QwtPlot::xBottom,
             with_seconds ? QStringLiteral("time (h:min:s)") : QStringLiteral("time (h:min)"));
}

QwtPlotMarker* addText(QwtPlot& plot, const QPointF& place, const QString& words, int points) {
    QwtText text(words);
    QFont font = plot.font();
    font.setPointSize(points);
    text.setFont(font);
    text.setColor(FaintText);
    QwtPlotMarker* const marker = new QwtPlotMarker;
    marker->setValue(place);
    marker->setLabel(text);
    marker->setItemAttribute(QwtPlotItem::Legend, false);
    marker->setZ(4);
    marker->attach(&plot);
    return marker;
}

/** A band of colour behind the curve for every stretch with one PID group. */
void addPidGroups(QwtPlot& plot, const RecipeProfile& profile) {
    const double duration = double(profile.durationSecs());
    const QVector<RecipeSpan> groups = profile.spans(RecipePidGroup);
    for (int i = 0; i < groups.size(); ++i) {
        const double start = double(groups[i].start_s);
        const double end = double(groups[i].end_s);
        QwtPlotZoneItem* const band = new QwtPlotZoneItem;
        band->setOrientation(Qt::Vertical);
        band->setInterval(start, end);
        band->setBrush(BandColors[i % 2]);
        band->setPen(QPen(Qt::NoPen));
        band->setZ(0);
        band->attach(&plot);
        if (end - start >= NarrowestPidLabel * duration)
            addText(plot, QPointF((start + end) / 2, PidLabelHeight * profile.highest()),
                    QStringLiteral("PID %1").arg(groups[i].value), 11);
    }
}

/** What fits into that share of the picture's width. */
QString programLabel(const RecipeProgram& program, double share) {
    if (program.number == 0 || share < NarrowestNumber)
        return QString();
    return share < NarrowestLabel ? QString::number(program.number) : recipeLabel(program.number);
}

/** Where programs end, and their labels. */
void addPrograms(QwtPlot& plot, const RecipeProfile& profile) {
    for (const RecipeSegment& segment : profile.segments) {
        const double width = double(segment.end_s - segment.start_s);
        QwtPlotMarker* const border = new QwtPlotMarker;
        border->setLineStyle(QwtPlotMarker::VLine);
        border->setLinePen(FaintText, 1, Qt::DotLine);
        border->setXValue(double(segment.end_s));
        border->setItemAttribute(QwtPlotItem::Legend, false);
        border->setZ(2);
        border->attach(&plot);
        const QString label = programLabel(segment.program, width / double(profile.durationSecs()));
        addText(plot, QPointF(double(segment.start_s) + width / 2, LabelHeight * profile.highest()),
                label, 10);
    }
}

void addSoakBand(QwtPlot& plot, const RecipeProfile& profile) {
    QVector<QwtIntervalSample> samples;
    for (const RecipeSegment& segment : profile.segments) {
        const double above = segment.program.value(RecipeSoakPlus);
        const double below = segment.program.value(RecipeSoakMinus);
        samples.append(
            QwtIntervalSample(double(segment.start_s), segment.from - below, segment.from + above));
        samples.append(
            QwtIntervalSample(double(segment.end_s), segment.to - below, segment.to + above));
    }
    QwtPlotIntervalCurve* const band =
        new QwtPlotIntervalCurve(QStringLiteral("guaranteed soak, G. SOAK + and -"));
    band->setSamples(samples);
    band->setBrush(SoakColor);
    band->setPen(QPen(Qt::NoPen));
    band->setZ(3);
    band->attach(&plot);
}

void addCurve(QwtPlot& plot, const RecipeProfile& profile) {
    QwtPlotCurve* const curve =
        new QwtPlotCurve(QStringLiteral("set temperature, ") + recipeTitles()[RecipeTemperature]);
    curve->setSamples(profile.curve());
    curve->setPen(QColor(RecipeCurveColor), 2.5);
    curve->setRenderHint(QwtPlotItem::RenderAntialiased);
    curve->setLegendAttribute(QwtPlotCurve::LegendShowLine);
    curve->setLegendIconSize(QSize(28, 12));
    curve->setZ(5);
    curve->attach(&plot);
}

QwtPlot* makePlot(QWidget* parent) {
    QwtPlot* const plot = new QwtPlot(parent);
    plot->setFont(parent->font());
    plot->setCanvasBackground(Qt::white);
    plot->plotLayout()->setAlignCanvasToScales(true);
    for (int axis : {QwtPlot::xBottom, QwtPlot::yLeft})
        plot->setAxisFont(axis, parent->font());
    return plot;
}

} // namespace

QwtPlot* makeCurvePlot(const RecipeProfile& profile, QWidget* parent) {
    QwtPlot* const plot = makePlot(parent);
    setTimeScale(*plot, profile);
    const double highest = std::max(1.0, profile.highest());
    plot->setAxisScaleDraw(QwtPlot::yLeft, new DegreeScaleDraw);
    plot->setAxisScale(QwtPlot::yLeft, 0, highest * Headroom,
                       niceDistance(highest, MostTemperatureMarks));
    setTitle(*plot, QwtPlot::yLeft, QStringLiteral("temperature (°C)"));
    addGrid(*plot, true);
    addPidGroups(*plot, profile);
    addPrograms(*plot, profile);
    addSoakBand(*plot, profile);
    addCurve(*plot, profile);
    plot->insertLegend(new QwtLegend, QwtPlot::TopLegend);
    plot->legend()->setFont(parent->font());
    plot->replot();
    return plot;
}

QwtPlot* makeTrackPlot(const RecipeProfile& profile, const QVector<RecipeTrack>& tracks,
                       QWidget* parent) {
    QwtPlot* const plot = makePlot(parent);
    setTimeScale(*plot, profile);
    QList<double> places;
    for (int i = 0; i < tracks.size(); ++i)
        places.append(i);
    plot->setAxisScaleDraw(QwtPlot::yLeft, new TrackScaleDraw(tracks));
    plot->setAxisScaleDiv(QwtPlot::yLeft, QwtScaleDiv(tracks.size() - 0.5, -0.5, {}, {}, places));
    addGrid(*plot, false);
    setTitle(*plot, QwtPlot::yLeft, QStringLiteral("events and inputs"));
    (new TrackItem(tracks))->attach(plot);
    plot->replot();
    return plot;
}

void alignPlots(QwtPlot& upper, QwtPlot& lower) {
    setTitle(upper, QwtPlot::xBottom, QString());
    QwtScaleDraw* const hidden = upper.axisScaleDraw(QwtPlot::xBottom);
    for (QwtScaleDraw::ScaleComponent part :
         {QwtScaleDraw::Backbone, QwtScaleDraw::Ticks, QwtScaleDraw::Labels})
        hidden->enableComponent(part, false);
    int left = 0, right = 0; // that the time marks at both ends need
    lower.axisWidget(QwtPlot::xBottom)->getBorderDistHint(left, right);
    double extent = 0;
    for (QwtPlot* plot : {&upper, &lower}) {
        plot->axisWidget(QwtPlot::xBottom)->setMinBorderDist(left, right);
        const QwtScaleWidget* const scale = plot->axisWidget(QwtPlot::yLeft);
        extent = std::max(extent, scale->scaleDraw()->extent(scale->font()));
    }
    for (QwtPlot* plot : {&upper, &lower}) {
        plot->axisScaleDraw(QwtPlot::yLeft)->setMinimumExtent(extent);
        plot->axisWidget(QwtPlot::yLeft)->setSpacing(TitleGap);
    }
}

} // namespace host
