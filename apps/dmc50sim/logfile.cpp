#include "apps/dmc50sim/logfile.h"

#include <cstdio>

QString LogFile::open(const QString& name) {
    std::lock_guard<std::mutex> lock(m_mutex);
    m_since_start.start();
    m_file.setFileName(name);
    const bool opened = name == QLatin1String("-") ? m_file.open(stdout, QIODevice::WriteOnly)
                                                   : m_file.open(QIODevice::WriteOnly);
    return opened ? QString() : QString::fromLatin1("%1: %2").arg(name, m_file.errorString());
}

void LogFile::write(const QString& text) {
    std::lock_guard<std::mutex> lock(m_mutex);
    const double seconds = double(m_since_start.elapsed()) / 1000;
    m_file.write(QString::fromLatin1("%1 %2\n").arg(seconds, 10, 'f', 3).arg(text).toUtf8());
    m_file.flush();
}
