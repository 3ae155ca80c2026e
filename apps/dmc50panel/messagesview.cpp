#include "apps/dmc50panel/messagesview.h"

#include "apps/dmc50panel/noticesender.h"

#include <QApplication>
#include <QBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QScreen>

namespace {

constexpr QSize ScreenSize(800, 480); // the smaller panels' display
constexpr int BarThickness = 56;
constexpr QSize MessagePanelSize(360, 200);
constexpr int MessagePanelMaxHeight = 340;
constexpr int MessagePanelColor = int(0xffd6dde4);

/** Where on the screen the bar must lie for a panel at @p edge to be seen. */
QBoxLayout::Direction directionFromBar(int edge) {
    static const QBoxLayout::Direction directions[] = {
        QBoxLayout::BottomToTop, QBoxLayout::TopToBottom, QBoxLayout::LeftToRight,
        QBoxLayout::RightToLeft};
    return directions[edge];
}

QString text(const char* utf8) {
    return QString::fromUtf8(utf8);
}

} // namespace

MessagesView::MessagesView(const Options& options) : m_bar(new QWidget(&m_screen)) {
    buildScreen(options.edge);
    const QRect area(m_screen.pos() + m_bar->pos(), m_bar->size());
    m_panel.reset(MessageCenter::initInstance(QSize(ScreenSize.width(), MessagePanelMaxHeight),
                                              MessagePanelSize, options.edge, area,
                                              MessagePanelColor));
    // A window manager would move the panel away from its bar and decorate it.
    m_panel->setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                            Qt::X11BypassWindowManagerHint);
    auto* toggle = m_bar->findChild<QPushButton*>();
    connect(toggle, &QPushButton::clicked, m_panel.get(), &MessageCenter::toggleShowHide);

    addWorker(text("Recipe transfer"),
              {text("Reading program 3 of 32"), text("Reading program 18 of 32"),
               text("32 programs saved to the USB stick")},
              2500);
    addWorker(text("USB 存储器"), {text("已插入, 可用空间 7.4 GB"), text("正在保存配方程序")},
              4000);
    addWorker(text("Controller 控制器"),
              {text("Station 2 does not answer"), text("2 号站通讯已恢复")}, 5500);
}

MessagesView::~MessagesView() {
    for (const Worker& worker : m_workers)
        worker.thread->quit();
    for (const Worker& worker : m_workers)
        worker.thread->wait();
}

void MessagesView::buildScreen(int edge) {
    m_screen.setFixedSize(ScreenSize);
    m_screen.setWindowTitle(text("dmc50panel: messages"));
    m_screen.setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
    m_screen.setStyleSheet(text("background: #263442; color: #9fb2c4;"));
    m_screen.move(QApplication::primaryScreen()->availableGeometry().center() -
                  m_screen.rect().center());

    const bool level = edge <= 1;
    m_bar->setStyleSheet(text("background: #3d5166; color: #e8eef4;"));
    if (level)
        m_bar->setFixedHeight(BarThickness);
    else
        m_bar->setFixedWidth(2 * BarThickness);
    auto* in_bar = new QBoxLayout(level ? QBoxLayout::RightToLeft : QBoxLayout::BottomToTop, m_bar);
    in_bar->addWidget(new QPushButton(text("Messages")));
    in_bar->addStretch();

    auto* column = new QBoxLayout(directionFromBar(edge), &m_screen);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_bar);
    auto* rest = new QLabel(text("Operator screen  操作画面"));
    rest->setAlignment(Qt::AlignLeft | Qt::AlignTop); // where no edge's panel comes
    rest->setMargin(24);
    column->addWidget(rest, 1);
    column->activate();
}

void MessagesView::addWorker(const QString& title, const QStringList& texts, int period_msecs) {
    Worker worker{std::make_unique<NoticeSender>(title, texts, period_msecs),
                  std::make_unique<QThread>()};
    NoticeSender* sender = worker.sender.get();
    sender->moveToThread(worker.thread.get());
    connect(worker.thread.get(), &QThread::started, sender, &NoticeSender::start);
    connect(worker.thread.get(), &QThread::finished, sender, &NoticeSender::stop);
    connect(sender, &NoticeSender::notice, m_panel.get(), &MessageCenter::showMessageAsync);
    connect(sender, &NoticeSender::toldFirst, this, &MessagesView::countFirstNotice);
    m_workers.push_back(std::move(worker));
}

void MessagesView::show() {
    m_screen.show();
    for (const Worker& worker : m_workers)
        worker.thread->start();
}

void MessagesView::countFirstNotice() {
    if (++m_first_notices == m_workers.size())
        emit settled();
}

/** Composed of the two windows, so that nothing of the desktop gets in. */
QPixmap MessagesView::picture() {
    QPixmap both = m_screen.grab();
    if (m_panel->isVisible()) {
        QPainter painter(&both);
        painter.drawPixmap(m_panel->pos() - m_screen.pos(), m_panel->grab());
    }
    return both;
}
