#include "runtime/panel/messagecenter.h"

#include "runtime/base/connectchecked.h"
#include "runtime/panel/messagecenterlistwidget.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>
#include <QVariant>

namespace {

const int TouchStrip = 24; // pixels at the top
const int AutoHideMsecs = 6000;
const int SlideTickMsecs = 100;
const char InstanceProperty[] = "MessageCenter";

} // namespace

MessageCenter* MessageCenter::m_instance = nullptr;

MessageCenter* MessageCenter::initInstance(QSize maxSize, QSize size, int edge, QRect area,
                                           int color) {
    if (!m_instance)
        m_instance = new MessageCenter(maxSize, size, edge, area, color);
    return m_instance;
}

MessageCenter* MessageCenter::getInstance() {
    return m_instance;
}

MessageCenter::MessageCenter(QSize max_size, QSize size, int dock_edge, QRect dock_area, int color,
                             QWidget* parent)
    : QWidget(parent)
    , ui()
    , area(dock_area)
    , edge(dock_edge)
    , animTimer(new QTimer(this))
    , rejectMessage(false)
    , maxSize(max_size)
    , autoHideTimer(new QTimer(this)) {
    buildForm();
    setUpTimers();
    setColors(QRgb(color));
    setFixedSize(size);
    deliverPendingResize(); // puts it to its hidden place
    connectChecked(ui.list, SIGNAL(scrollClicked()), this, SLOT(scrollClicked()));
    qApp->setProperty(InstanceProperty, QVariant::fromValue(static_cast<void*>(this)));
}

MessageCenter::~MessageCenter() {
    if (m_instance == this)
        m_instance = nullptr;
    if (qApp && qApp->property(InstanceProperty).value<void*>() == this)
        qApp->setProperty(InstanceProperty, QVariant());
}

void MessageCenter::buildForm() {
    setObjectName(QLatin1String("MessageCenter"));
    setWindowTitle(QLatin1String("Form"));
    resize(400, 300);

    ui.list = new MessageCenterListWidget(this);
    ui.list->setObjectName(QLatin1String("listWidget"));
    ui.list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    ui.list->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    ui.list->setAutoScroll(false);
    ui.list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    ui.list->setSelectionMode(QAbstractItemView::NoSelection);
    ui.list->setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    ui.list->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    ui.list->setViewMode(QListView::ListMode);

    ui.horizontalLayout = new QHBoxLayout(this);
    ui.horizontalLayout->setObjectName(QLatin1String("horizontalLayout"));
    ui.horizontalLayout->setContentsMargins(-1, TouchStrip, -1, -1); // -1: the style's own
    ui.horizontalLayout->addWidget(ui.list);
}

void MessageCenter::setUpTimers() {
    animTimer->setInterval(SlideTickMsecs);
    connectChecked(animTimer, SIGNAL(timeout()), this, SLOT(timerOut()));
    autoHideTimer->setInterval(AutoHideMsecs);
    autoHideTimer->setSingleShot(true);
    connectChecked(autoHideTimer, SIGNAL(timeout()), this, SLOT(_hideWrapper()));
    connectChecked(ui.list, SIGNAL(clicked(QModelIndex)), autoHideTimer, SLOT(start()));
}

void MessageCenter::setColors(QRgb background) {
    QPalette colors = palette();
    colors.setColor(QPalette::Window, QColor::fromRgba(background));
    colors.setColor(QPalette::WindowText, QColor::fromRgba(background ^ ~qRgba(0, 0, 0, 255)));
    setPalette(colors);
    setAutoFillBackground(true);
}

void MessageCenter::setRejectMessage(bool reject) {
    rejectMessage = reject;
}

void MessageCenter::paintEvent(QPaintEvent* event) {
    QWidget::paintEvent(event);
    QPainter painter(this);
    painter.setPen(Qt::gray);
    painter.drawRect(0, 0, width() - 1, height() - 1);
}

void MessageCenter::mousePressEvent(QMouseEvent* event) {
    const QRect strip(0, 0, width(), ui.horizontalLayout->contentsMargins().top());
    if (strip.contains(event->pos()))
        toggleShowHide();
}
