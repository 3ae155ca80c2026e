// The message panel's size, its places and its way between them.
#include "runtime/panel/messagecenter.h"

#include "runtime/panel/messagecenterlistwidget.h"

#include <QApplication>
#include <QDebug>
#include <QResizeEvent>
#include <QTimer>

void MessageCenter::adjustSize() {
    const bool was_shown = pos() == shownPos;
    const bool was_hidden = pos() == hiddenPos;
    const int entries = ui.list->count();
    setFixedHeight(messageCenterHeight(entries, maxSize.height()));
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
    if (!dock().hasKnownEdge())
        qDebug("WTF? Where should I be?");
    const MessageCenterPlaces places = dock().placesOf(event->size());
    shownPos = places.shown;
    hiddenPos = places.hidden;
    animTimer->stop();
    move(hiddenPos);
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

void MessageCenter::animatedShow() {
    if (dock().hasKnownEdge()) {
        move(hiddenPos);
        setVisible(true);
    }
    anim = MessageCenterSlide(dock().wayIn(), hiddenPos, shownPos);
    animTimer->start();
    autoHideTimer->start();
}

void MessageCenter::animatedHide() {
    autoHideTimer->stop();
    move(shownPos);
    anim = MessageCenterSlide(dock().wayOut(), shownPos, hiddenPos);
    animTimer->start();
}

void MessageCenter::timerOut() {
    move(anim.takeStepFrom(pos()));
    if (anim.isOver())
        animTimer->stop();
}
