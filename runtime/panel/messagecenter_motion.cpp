// The message panel's size, its places and its way between them.
#include "runtime/panel/messagecenter.h"

#include "runtime/panel/messagecenteritemwidget.h"
#include "runtime/panel/messagecenterlistwidget.h"

#include <QApplication>
#include <QDebug>
#include <QResizeEvent>
#include <QTimer>

namespace {

const int frame_height = 40; // the panel without its rows: touch strip and margins
const int row_height = MessageCenterItemWidget::FormHeight;
const int slide_steps = 5;

} // namespace

void MessageCenter::adjustSize() {
    const bool was_shown = pos() == shownPos;
    const bool was_hidden = pos() == hiddenPos;
    const int entries = ui.list->count();
    const int room = maxSize.height() - frame_height;
    // Compared by the entries' height but made of rows: a list that just fits by
    // the one may be a few pixels over by the other.
    const bool all_fit = MessageCenterItemWidget::EntryHeight * entries < room;
    const int rows = all_fit ? entries : room / row_height;
    setFixedHeight(row_height * rows + frame_height);
    deliverPendingResize();
    if (was_shown && entries > 0)
        move(shownPos);
    if (was_hidden || entries == 0)
        move(hiddenPos);
    ui.list->determineScrollVisible();
}

/** Qt keeps the resize event of a hidden window until it is shown; the docking
 *  positions and the list's width are needed at once. */
void MessageCenter::deliverPendingResize() {
    if (!testAttribute(Qt::WA_PendingResizeEvent))
        return;
    setAttribute(Qt::WA_PendingResizeEvent, false);
    QResizeEvent event(size(), QSize());
    QApplication::sendEvent(this, &event);
}

void MessageCenter::resizeEvent(QResizeEvent* event) {
    computePositions(event->size());
    animTimer->stop();
    move(hiddenPos);
}

/** The different gaps of one and two pixels are meant so: panels in the field
 *  line up with them. */
void MessageCenter::computePositions(const QSize& size) {
    const int w = size.width();
    const int h = size.height();
    switch (edge) {
    case 0:
        shownPos = QPoint(area.right() - w, area.top() - h);
        hiddenPos = QPoint(area.right() - w, area.bottom() + 2);
        break;
    case 1:
        shownPos = QPoint(area.right() - w, area.bottom() + 1);
        hiddenPos = QPoint(area.right() - w, area.top() - h);
        break;
    case 2:
        shownPos = QPoint(area.right() + 1, area.bottom() - h);
        hiddenPos = QPoint(area.left() - w, area.bottom() - h);
        break;
    case 3:
        shownPos = QPoint(area.left() - w, area.bottom() - h);
        hiddenPos = QPoint(area.right() + 2, area.bottom() - h);
        break;
    default:
        qDebug("WTF? Where should I be?");
        shownPos = QPoint(0, 0);
        hiddenPos = QPoint(-w, 0);
    }
}

void MessageCenter::instantShow() {
    animTimer->stop();
    setVisible(true);
    move(shownPos);
    autoHideTimer->start();
}

void MessageCenter::instantHide() {
    animTimer->stop();
    move(hiddenPos);
    setVisible(false);
}

void MessageCenter::_showWrapper() {
    instantShow();
}

void MessageCenter::_hideWrapper() {
    instantHide();
}

void MessageCenter::toggleShowHide() {
    if (pos() == shownPos)
        _hideWrapper();
    else if (pos() == hiddenPos && ui.list->count() > 0)
        _showWrapper();
}

void MessageCenter::scrollClicked() {
    restartAutoHide();
}

void MessageCenter::restartAutoHide() {
    if (autoHideTimer->isActive())
        autoHideTimer->start();
}

bool MessageCenter::dockedAtKnownEdge() const {
    return edge >= 0 && edge <= 3;
}

void MessageCenter::animatedShow() {
    static const MoveDirection by_edge[] = {YDecreasing, YIncreasing, XIncreasing, XDecreasing};
    if (dockedAtKnownEdge()) {
        move(hiddenPos);
        setVisible(true);
        setSlide(by_edge[edge], hiddenPos, shownPos);
    }
    animTimer->start();
    autoHideTimer->start();
}

void MessageCenter::animatedHide() {
    static const MoveDirection by_edge[] = {YIncreasing, YDecreasing, XDecreasing, XIncreasing};
    autoHideTimer->stop();
    move(shownPos);
    if (dockedAtKnownEdge())
        setSlide(by_edge[edge], shownPos, hiddenPos);
    animTimer->start();
}

void MessageCenter::setSlide(MoveDirection direction, const QPoint& from, const QPoint& to) {
    const bool along_x = direction == XDecreasing || direction == XIncreasing;
    anim.moveDir = direction;
    anim.steps = slide_steps;
    anim.step = 0;
    anim.distance = along_x ? qAbs(to.x() - from.x()) : qAbs(to.y() - from.y());
    anim.target = along_x ? to.x() : to.y();
}

void MessageCenter::timerOut() {
    ++anim.step;
    const int increment = anim.distance / anim.steps;
    const bool arrived = anim.step == anim.steps;
    QPoint next = pos();
    switch (anim.moveDir) {
    case XDecreasing:
        next.setX(arrived ? anim.target : next.x() - increment);
        break;
    case XIncreasing:
        next.setX(arrived ? anim.target : next.x() + increment);
        break;
    case YDecreasing:
        next.setY(arrived ? anim.target : next.y() - increment);
        break;
    case YIncreasing:
        next.setY(arrived ? anim.target : next.y() + increment);
        break;
    default:
        animTimer->stop();
        return;
    }
    if (arrived)
        animTimer->stop();
    move(next);
}
