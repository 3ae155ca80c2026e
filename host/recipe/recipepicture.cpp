#include "host/recipe/recipepicture.h"

#include "host/recipe/recipeplots.h"

#include <qwt_plot.h>

#include <QLabel>
#include <QVBoxLayout>
#include <QWidget>

namespace host {

namespace {

constexpr int Margin = 18;
constexpr int TrackHeight = 26; // of one event
constexpr int ScaleHeight = 90; // of the time scale and its title
constexpr int TitlePoints = 17;
constexpr int TextPoints = 11;

QFont pictureFont(int points) {
    QFont font;
    // The second has the Chinese letters, where the first is not there at all.
    font.setFamilies({QStringLiteral("DejaVu Sans"), QStringLiteral("WenQuanYi Zen Hei")});
    font.setPointSize(points);
    return font;
}

} // namespace

QImage recipePicture(const RecipeProfile& profile, const QString& title, const QSize& size) {
    if (profile.durationSecs() <= 0)
        return QImage();
    QWidget sheet;
    sheet.setFont(pictureFont(TextPoints));
    sheet.setStyleSheet(QStringLiteral("background: white; color: #263238;"));
    QVBoxLayout* const layout = new QVBoxLayout(&sheet);
    layout->setContentsMargins(Margin, Margin, Margin, Margin);
    layout->setSpacing(0);

    QLabel* const heading = new QLabel(title, &sheet);
    heading->setTextFormat(Qt::PlainText);
    heading->setFont(pictureFont(TitlePoints));
    layout->addWidget(heading, 0, Qt::AlignHCenter);
    QwtPlot* const curve_plot = makeCurvePlot(profile, &sheet);
    layout->addWidget(curve_plot, 1);
    const QVector<RecipeTrack> tracks = profile.tracks();
    if (!tracks.isEmpty()) {
        QwtPlot* const track_plot = makeTrackPlot(profile, tracks, &sheet);
        track_plot->setFixedHeight(TrackHeight * tracks.size() + ScaleHeight);
        layout->addWidget(track_plot);
        alignPlots(*curve_plot, *track_plot);
    }
    sheet.resize(size);
    return sheet.grab().toImage();
}

} // namespace host
