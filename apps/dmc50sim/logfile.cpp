#include "apps/dmc50sim/logfile.h"

#include <cstdio>

void tellOfLostOutput(const QString& file, const QString& error) {
    std::fprintf(stderr, "%s: %s; what cannot be written is lost\n", qPrintable(file),
                 qPrintable(error));
}

Result<void> LogFile::open(const QString& name) {
    std::lock_guard<std::mutex> lock(m_mutex);
    m_since_start.start();
    m_file.setFileName(name);
    const bool opened = name == QLatin1String("-") ? m_file.open(stdout, QIODevice::WriteOnly)
                                                   : m_file.open(QIODevice::WriteOnly);
    if (!opened)
        return Failure(QString::fromLatin1("%1: %2").arg(name, m_file.errorString()));
    return {};
}

void LogFile::write(const QString& text) {
    std::lock_guard<std::mutex> lock(m_mutex);
    const double seconds = double(m_since_start.elapsed()) / 1000;
    const QByteArray line =
        QString::fromLatin1("%1 %2\n").arg(seconds, 10, 'f', 3).arg(text).toUtf8();
    if ((m_file.write(line) == line.size() && m_file.flush()) || m_has_lost_a_line)
        return;
    m_has_lost_a_line = true;
    tellOfLostOutput(m_file.fileName(), m_file.errorString());
}
