#include "tests/campaign/regression.h"

#include <QFile>

namespace campaign {

namespace {

/** Returns whether the line is understood. */
bool takeLine(Regression& regression, const QString& line) {
    if (line.startsWith(QLatin1String("# "))) {
        regression.comment += (regression.comment.isEmpty() ? "" : "\n") + line.mid(2);
        return true;
    }
    bool is_number = false;
    const quint64 number = line.section(QLatin1Char(' '), 1, 1).toULongLong(&is_number);
    if (line.startsWith(QLatin1String("seed ")))
        regression.seed = number;
    else if (line.startsWith(QLatin1String("exchanges ")))
        regression.exchanges = number;
    else if (const std::optional<LineFault> fault = parseFaultLine(line)) {
        regression.faults.push_back(*fault);
        return true;
    }
    return is_number;
}

} // namespace

Result<Regression> loadRegression(const QString& file_name) {
    QFile file(file_name);
    if (!file.open(QIODevice::ReadOnly))
        return Failure(QString::fromLatin1("%1: %2").arg(file_name, file.errorString()));
    Regression regression;
    int number = 0;
    for (const QString& line : QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'))) {
        ++number;
        if (!line.isEmpty() && !takeLine(regression, line))
            return Failure(QString::fromLatin1("%1:%2: not understood").arg(file_name).arg(number));
    }
    if (regression.exchanges == 0)
        return Failure(QString::fromLatin1("%1: no exchanges").arg(file_name));
    return regression;
}

Result<void> saveRegression(const Regression& regression, const QString& file_name) {
    QStringList lines;
    for (const QString& line : regression.comment.split(QLatin1Char('\n')))
        lines += QLatin1String("# ") + line;
    lines += QString::fromLatin1("seed %1").arg(regression.seed);
    lines += QString::fromLatin1("exchanges %1").arg(regression.exchanges);
    for (const LineFault& fault : regression.faults)
        lines += faultLine(fault);
    QFile file(file_name);
    const QByteArray text = (lines.join(QLatin1Char('\n')) + QLatin1Char('\n')).toUtf8();
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.flush())
        return Failure(QString::fromLatin1("%1: %2").arg(file_name, file.errorString()));
    return {};
}

Regression regressionOf(quint64 seed, quint64 exchanges) {
    return {QString(), seed, exchanges, makeScenario(seed, int(exchanges)).faults};
}

Outcome play(const Regression& regression) {
    Scenario scenario = makeScenario(regression.seed, 0);
    scenario.faults = regression.faults;
    return Life(scenario, regression.exchanges).run();
}

} // namespace campaign
