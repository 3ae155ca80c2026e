#ifndef RUNTIME_PANEL_MESSAGECENTERGEOMETRY_H
#define RUNTIME_PANEL_MESSAGECENTERGEOMETRY_H

#include <QPoint>
#include <QRect>
#include <QSize>

// The message panel's measures as plain values: no widget and no time is needed
// to know them. Lengths are pixels, places are those of the top left corner on
// the screen.

const int MessageEntryHeight = 60; ///< of an entry's widget
const int MessageRowHeight = 61;   ///< of the row that it gets

/** The panel's height with @p entries rows, or with the whole rows that there is
 *  room for below @p max_height. */
int messageCenterHeight(int entries, int max_height);

struct MessageCenterPlaces {
    QPoint shown;
    QPoint hidden;
};

/** A way along one axis that takes a step at each tick of a clock. */
struct MessageCenterSlide {
    enum Direction { NoDirection = -1, XDecreasing, XIncreasing, YDecreasing, YIncreasing };

    /** Leads nowhere. */
    MessageCenterSlide();

    MessageCenterSlide(Direction direction, const QPoint& from, const QPoint& to);

    /** Takes a step from @p place and tells where it leads. The last one ends at
     *  the target, whatever was lost when the way was cut into whole pixels. */
    QPoint takeStepFrom(const QPoint& place);

    /** No further step is wanted. */
    bool isOver() const;

    Direction moveDir;
    int steps;    // of the whole way
    int step;     // steps taken
    int distance; // absolute
    int target;   // final x or y

private:
    bool arrived() const;
};

/** The rectangle that the panel docks at and the side of it to pop from: 0 above,
 *  1 below, 2 right, 3 left. */
class MessageCenterDock {
public:
    MessageCenterDock(const QRect& area, int edge);

    bool hasKnownEdge() const;

    /** For a panel of size @p panel; at an unknown edge the screen's corner, and
     *  outside of it. */
    MessageCenterPlaces placesOf(const QSize& panel) const;

    /** Which way the panel slides into sight, and out of it. */
    MessageCenterSlide::Direction wayIn() const;
    MessageCenterSlide::Direction wayOut() const;

private:
    QRect m_area;
    int m_edge;
};

#endif
