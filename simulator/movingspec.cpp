#include "simulator/movingspec.h"

#include "simulator/spectext.h"

#include <cmath>

namespace simulator {

namespace {

constexpr double counter_period_seconds = 1;

double* settingOf(MovingValue& value, const QString& key) {
    const bool counts = value.shape == MovingValue::Shape::Counter;
    if (key == QLatin1String("from"))
        return &value.from;
    if (key == QLatin1String("period"))
        return &value.period_seconds;
    if (key == QLatin1String("to") && !counts)
        return &value.to;
    if (key == QLatin1String("step") && counts)
        return &value.step;
    return nullptr;
}

QString applySetting(MovingValue& value, const QString& key, const QString& text) {
    double* const setting = settingOf(value, key);
    if (!setting)
        return QString::fromLatin1("unknown key \"%1\"; the keys are from, %2 and period")
            .arg(key, QLatin1String(value.shape == MovingValue::Shape::Counter ? "step" : "to"));
    bool is_number = false;
    *setting = text.toDouble(&is_number);
    if (!is_number || !std::isfinite(*setting) || value.period_seconds <= 0)
        return QString::fromLatin1("\"%1\" is no number for %2%3")
            .arg(text, key,
                 QLatin1String(setting == &value.period_seconds ? "; it must be above 0 seconds"
                                                                : ""));
    return QString();
}

} // namespace

MovingSpec parseMovingSpec(MovingValue::Shape shape, const QString& text) {
    MovingSpec result;
    result.value.shape = shape;
    if (shape == MovingValue::Shape::Counter)
        result.value.period_seconds = counter_period_seconds;
    const SpecText spec = parseSpec(text);
    result.error = spec.error;
    const std::optional<StationAddress> address = parseStationAddress(spec.head);
    if (address)
        result.address = *address;
    else
        result.error = QString::fromLatin1("\"%1\" is no address; it must be like 0x100, or "
                                           "2-0x100 for station 2")
                           .arg(spec.head);
    for (const auto& [key, value] : spec.settings) {
        if (result.error.isEmpty())
            result.error = applySetting(result.value, key, value);
    }
    return result;
}

} // namespace simulator
