#include "runtime/panel/messagecenterlistwidget.h"

#include "runtime/base/connectchecked.h"
#include "runtime/panel/qtguicompat.h"

#include <QLabel>
#include <QPushButton>
#include <QResizeEvent>
#include <QScrollBar>

namespace {

const int PageWheelDelta = 200; // eighths of a degree for one arrow click

} // namespace

MessageCenterListWidget::MessageCenterListWidget(QWidget* parent)
    : QListWidget(parent)
    , upButton(new QPushButton(this))
    , downButton(new QPushButton(this))
    , pageLabel(new QLabel(this)) {
    upButton->setIcon(QIcon(QLatin1String(":/images/up_arrow.png")));
    downButton->setIcon(QIcon(QLatin1String(":/images/down_arrow.png")));
    pageLabel->setAutoFillBackground(true);
    pageLabel->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    hideScroll();
    connectChecked(upButton, SIGNAL(clicked()), this, SLOT(previousClicked()));
    connectChecked(downButton, SIGNAL(clicked()), this, SLOT(nextClicked()));
}

void MessageCenterListWidget::determineScrollVisible() {
    if (!entriesOverflow()) {
        hideScroll();
        return;
    }
    // Asking for a row's place brings the scroll bar's range up to date too.
    const int row = firstVisibleRow();
    pageLabel->setText(QString::fromLatin1("%1/%2").arg(row + 1).arg(count()));
    showScroll();
    const QScrollBar* bar = verticalScrollBar();
    upButton->setVisible(bar->value() != bar->minimum());
    downButton->setVisible(bar->value() != bar->maximum());
}

bool MessageCenterListWidget::entriesOverflow() const {
    if (count() <= 1)
        return false;
    const QWidget* first = itemWidget(item(0));
    return first && height() < count() * first->height();
}

/** -1 when every row lies above the viewport. */
int MessageCenterListWidget::firstVisibleRow() const {
    for (int row = 0; row < count(); ++row) {
        if (visualItemRect(item(row)).top() >= 0)
            return row;
    }
    return -1;
}

void MessageCenterListWidget::showScroll() {
    setScrollVisible(true);
}

void MessageCenterListWidget::hideScroll() {
    setScrollVisible(false);
}

void MessageCenterListWidget::setScrollVisible(bool visible) {
    upButton->setVisible(visible);
    downButton->setVisible(visible);
    pageLabel->setVisible(visible);
}

void MessageCenterListWidget::previousClicked() {
    turnWheel(PageWheelDelta);
}

void MessageCenterListWidget::nextClicked() {
    turnWheel(-PageWheelDelta);
}

void MessageCenterListWidget::turnWheel(int delta) {
    QWheelEvent turn = verticalWheelTurn(delta);
    wheelEvent(&turn);
    emit scrollClicked();
}

void MessageCenterListWidget::resizeEvent(QResizeEvent* event) {
    QListWidget::resizeEvent(event);
    const int width = event->size().width();
    const int height = event->size().height();
    upButton->setFixedSize(width + 3, 30);
    downButton->setFixedSize(width + 3, 30);
    pageLabel->setFixedSize(60, 30);
    upButton->move(0, 0);
    downButton->move(0, height - 25);
    pageLabel->move(width - 56, height - 25);
}

void MessageCenterListWidget::wheelEvent(QWheelEvent* event) {
    QListWidget::wheelEvent(event);
    determineScrollVisible();
}
