#include "runtime/panel/messagecentergeometry.h"

namespace {

const int FrameHeight = 40; // the panel without its rows: touch strip and margins
const int SlideSteps = 5;

bool isAlongX(MessageCenterSlide::Direction direction) {
    return direction == MessageCenterSlide::XDecreasing ||
           direction == MessageCenterSlide::XIncreasing;
}

bool isDecreasing(MessageCenterSlide::Direction direction) {
    return direction == MessageCenterSlide::XDecreasing ||
           direction == MessageCenterSlide::YDecreasing;
}

} // namespace

int messageCenterHeight(int entries, int max_height) {
    const int room = max_height - FrameHeight;
    // Compared by the entries' height but made of rows: a list that just fits by
    // the one may be a few pixels over by the other.
    const bool all_fit = MessageEntryHeight * entries < room;
    const int rows = all_fit ? entries : room / MessageRowHeight;
    return MessageRowHeight * rows + FrameHeight;
}

MessageCenterSlide::MessageCenterSlide() : MessageCenterSlide(NoDirection, QPoint(), QPoint()) {}

MessageCenterSlide::MessageCenterSlide(Direction direction, const QPoint& from, const QPoint& to)
    : moveDir(direction)
    , steps(SlideSteps)
    , step(0)
    , distance(isAlongX(direction) ? qAbs(to.x() - from.x()) : qAbs(to.y() - from.y()))
    , target(isAlongX(direction) ? to.x() : to.y()) {}

QPoint MessageCenterSlide::takeStepFrom(const QPoint& place) {
    ++step;
    if (moveDir == NoDirection)
        return place;
    QPoint next = place;
    int& moving = isAlongX(moveDir) ? next.rx() : next.ry();
    const int increment = distance / steps;
    moving = arrived() ? target : moving + (isDecreasing(moveDir) ? -increment : increment);
    return next;
}

bool MessageCenterSlide::arrived() const {
    return step == steps;
}

bool MessageCenterSlide::isOver() const {
    return arrived() || moveDir == NoDirection;
}

MessageCenterDock::MessageCenterDock(const QRect& area, int edge) : m_area(area), m_edge(edge) {}

bool MessageCenterDock::hasKnownEdge() const {
    return m_edge >= 0 && m_edge <= 3;
}

/** The different gaps of one and two pixels are meant so: panels in the field
 *  line up with them. */
MessageCenterPlaces MessageCenterDock::placesOf(const QSize& panel) const {
    const int beside = m_area.right() - panel.width();  // right edges aligned
    const int level = m_area.bottom() - panel.height(); // bottom edges aligned
    const int above = m_area.top() - panel.height();
    const int left = m_area.left() - panel.width();
    MessageCenterPlaces places = {QPoint(0, 0), QPoint(-panel.width(), 0)};
    switch (m_edge) {
    case 0:
        places.shown = QPoint(beside, above);
        places.hidden = QPoint(beside, m_area.bottom() + 2);
        break;
    case 1:
        places.shown = QPoint(beside, m_area.bottom() + 1);
        places.hidden = QPoint(beside, above);
        break;
    case 2:
        places.shown = QPoint(m_area.right() + 1, level);
        places.hidden = QPoint(left, level);
        break;
    case 3:
        places.shown = QPoint(left, level);
        places.hidden = QPoint(m_area.right() + 2, level);
        break;
    }
    return places;
}

MessageCenterSlide::Direction MessageCenterDock::wayIn() const {
    static const MessageCenterSlide::Direction by_edge[] = {
        MessageCenterSlide::YDecreasing, MessageCenterSlide::YIncreasing,
        MessageCenterSlide::XIncreasing, MessageCenterSlide::XDecreasing};
    return hasKnownEdge() ? by_edge[m_edge] : MessageCenterSlide::NoDirection;
}

MessageCenterSlide::Direction MessageCenterDock::wayOut() const {
    static const MessageCenterSlide::Direction by_edge[] = {
        MessageCenterSlide::YIncreasing, MessageCenterSlide::YDecreasing,
        MessageCenterSlide::XDecreasing, MessageCenterSlide::XIncreasing};
    return hasKnownEdge() ? by_edge[m_edge] : MessageCenterSlide::NoDirection;
}
