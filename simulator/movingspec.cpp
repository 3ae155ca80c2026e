#include "simulator/movingspec.h"

#include "simulator/spectext.h"

#include <cmath>

namespace simulator {

namespace {

constexpr double CounterPeriodSeconds = 1;

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

Result<void> applySetting(MovingValue& value, const QString& key, const QString& text) {
    double* const setting = settingOf(value, key);
    if (!setting)
        return Failure(
            QString::fromLatin1("unknown key \"%1\"; the keys are from, %2 and period")
                .arg(key,
                     QLatin1String(value.shape == MovingValue::Shape::Counter ? "step" : "to")));
    bool is_number = false;
    *setting = text.toDouble(&is_number);
    if (!is_number || !std::isfinite(*setting) || value.period_seconds <= 0)
        return Failure(
            QString::fromLatin1("\"%1\" is no number for %2%3")
                .arg(text, key,
                     QLatin1String(setting == &value.period_seconds ? "; it must be above 0 seconds"
                                                                    : "")));
    return {};
}

} // namespace

Result<MovingSpec> parseMovingSpec(MovingValue::Shape shape, const QString& text) {
    MovingSpec result;
    result.value.shape = shape;
    if (shape == MovingValue::Shape::Counter)
        result.value.period_seconds = CounterPeriodSeconds;
    const std::optional<StationAddress> address = parseStationAddress(specHead(text));
    if (!address)
        return Failure(QString::fromLatin1("\"%1\" is no address; it must be like 0x100, or "
                                           "2-0x100 for station 2")
                           .arg(specHead(text)));
    result.address = *address;
    const Result<SpecSettings> settings = specSettings(text);
    if (!settings)
        return Failure(settings.error());
    for (const auto& [key, value] : *settings) {
        if (const Result<void> applied = applySetting(result.value, key, value); !applied)
            return Failure(applied.error());
    }
    return result;
}

} // namespace simulator
