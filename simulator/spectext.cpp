#include "simulator/spectext.h"

#include <QStringList>

namespace simulator {

QString specHead(const QString& text) {
    return text.section(QLatin1Char(':'), 0, 0).trimmed();
}

Result<SpecSettings> specSettings(const QString& text) {
    SpecSettings settings;
    const QString rest = text.section(QLatin1Char(':'), 1);
    const QStringList parts = rest.split(QLatin1Char(','), Qt::SkipEmptyParts);
    for (const QString& part : parts) {
        const int equals = part.indexOf(QLatin1Char('='));
        if (equals < 0)
            return Failure(QString::fromLatin1("\"%1\" must be like KEY=VALUE").arg(part));
        settings.emplace_back(part.left(equals).trimmed(), part.mid(equals + 1).trimmed());
    }
    return settings;
}

} // namespace simulator
