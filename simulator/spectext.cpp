#include "simulator/spectext.h"

#include <QStringList>

namespace simulator {

SpecText parseSpec(const QString& text) {
    SpecText spec;
    spec.head = text.section(QLatin1Char(':'), 0, 0).trimmed();
    const QString rest = text.section(QLatin1Char(':'), 1);
    const QStringList parts = rest.split(QLatin1Char(','), Qt::SkipEmptyParts);
    for (const QString& part : parts) {
        const int equals = part.indexOf(QLatin1Char('='));
        if (equals < 0) {
            spec.error = QString::fromLatin1("\"%1\" must be like KEY=VALUE").arg(part);
            return spec;
        }
        spec.settings.emplace_back(part.left(equals).trimmed(), part.mid(equals + 1).trimmed());
    }
    return spec;
}

} // namespace simulator
