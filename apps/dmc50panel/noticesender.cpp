#include "apps/dmc50panel/noticesender.h"

#include <QTimer>

NoticeSender::NoticeSender(const QString& title, const QStringList& texts, int period_msecs)
    : m_title(title), m_texts(texts), m_timer(new QTimer(this)) {
    m_timer->setInterval(period_msecs);
    connect(m_timer, &QTimer::timeout, this, &NoticeSender::tellNext);
}

void NoticeSender::start() {
    m_timer->start();
    tellNext();
    emit toldFirst();
}

void NoticeSender::stop() {
    m_timer->stop();
}

void NoticeSender::tellNext() {
    emit notice(m_title, m_texts.at(m_next), false);
    m_next = (m_next + 1) % m_texts.size();
}
