#include "simulator/fault.h"

#include "simulator/numbers.h"
#include "simulator/spectext.h"
#include "trace/escapedtext.h"

#include <QStringList>

#include <array>

namespace simulator {

namespace {

constexpr quint32 LongestPauseMsecs = 3600000;
constexpr quint8 DefaultEndCode = EndUnknownCommand;

struct KindShape {
    Fault::Kind kind;
    const char* name;
    const char* settings; // beyond those that say when, separated by blanks
    int default_ms;
};

constexpr std::array<KindShape, 12> KindShapes = {{
    {Fault::Kind::Silence, "silence", "", 0},
    {Fault::Kind::Late, "late", "ms", 1000},
    {Fault::Kind::Split, "split", "at ms", 50},
    {Fault::Kind::Dribble, "dribble", "ms", 10},
    {Fault::Kind::BadChecksum, "checksum", "", 0},
    {Fault::Kind::WrongStation, "wrong-station", "value", 0},
    {Fault::Kind::EndCode, "end-code", "value", 0},
    {Fault::Kind::Truncate, "truncate", "at", 0},
    {Fault::Kind::NoiseBefore, "noise-before", "bytes", 0},
    {Fault::Kind::NoiseAfter, "noise-after", "bytes", 0},
    {Fault::Kind::Echo, "echo", "", 0},
    {Fault::Kind::Close, "close", "ms", 1000},
}};

constexpr bool isInOrderOfKinds() {
    for (std::size_t i = 0; i < KindShapes.size(); ++i) {
        if (std::size_t(KindShapes[i].kind) != i)
            return false;
    }
    return KindShapes.size() == std::size_t(Fault::Kind::Close) + 1;
}
static_assert(isInOrderOfKinds(), "a kind is the index of its shape");

const KindShape& shapeOf(Fault::Kind kind) {
    return KindShapes[std::size_t(kind)];
}

QStringList ownSettings(Fault::Kind kind) {
    return QString::fromLatin1(shapeOf(kind).settings).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

/** Stores a number within its limits; otherwise leaves the target alone. */
template <typename Target>
bool storeNumber(Target& target, const QString& text, quint32 least, quint32 most) {
    const std::optional<quint32> number = parseNumber(text);
    if (!number || text.startsWith(QLatin1Char('-')) || *number < least || *number > most)
        return false;
    target = Target(*number);
    return true;
}

bool storeChance(Fault& fault, const QString& text) {
    bool is_number = false;
    fault.chance = text.toDouble(&is_number);
    return is_number && fault.chance >= 0 && fault.chance <= 1;
}

bool storeCommand(Fault& fault, const QString& text) {
    for (Command command : {Command::ReadList, Command::WriteGroup, Command::WriteList}) {
        if (text == QLatin1String(commandName(command)))
            fault.command = command;
    }
    return fault.command.has_value();
}

bool storeBytes(Fault& fault, const QString& text) {
    const std::optional<QByteArray> bytes = trace::unescapedBytes(text.toUtf8());
    fault.bytes = bytes.value_or(QByteArray());
    return !fault.bytes.isEmpty();
}

struct Setting {
    const char* key;
    const char* must_be;
    bool (*store)(Fault& fault, const QString& text);
};

constexpr quint32 LargestNumber = 0xFFFFFFFF;
constexpr int WhenSettings = 6; // the first ones, which every kind takes

constexpr std::array<Setting, 10> KnownSettings = {{
    {"station", "a station, 1 to 255",
     [](Fault& fault, const QString& text) { return storeNumber(fault.station, text, 1, 255); }},
    {"command", "RN, WG or WN", storeCommand},
    {"on", "a number from 1",
     [](Fault& fault, const QString& text) {
         return storeNumber(fault.on, text, 1, LargestNumber);
     }},
    {"every", "a number from 1",
     [](Fault& fault, const QString& text) {
         return storeNumber(fault.every, text, 1, LargestNumber);
     }},
    {"chance", "between 0 and 1", storeChance},
    {"count", "a number from 1",
     [](Fault& fault, const QString& text) {
         return storeNumber(fault.count, text, 1, LargestNumber);
     }},
    {"ms", "milliseconds, 0 to 3600000",
     [](Fault& fault, const QString& text) {
         return storeNumber(fault.ms, text, 0, LongestPauseMsecs);
     }},
    {"at", "a number of bytes, 1 to 1000",
     [](Fault& fault, const QString& text) { return storeNumber(fault.at, text, 1, 1000); }},
    {"value", "a number, 1 to 255",
     [](Fault& fault, const QString& text) { return storeNumber(fault.value, text, 1, 255); }},
    {"bytes", "bytes such as <FF><00>AB", storeBytes},
}};

QStringList allowedSettings(Fault::Kind kind) {
    QStringList keys = ownSettings(kind);
    for (int i = 0; i < WhenSettings; ++i)
        keys += QLatin1String(KnownSettings[std::size_t(i)].key);
    return keys;
}

const Setting* findSetting(const Fault& fault, const QString& key) {
    for (const Setting& setting : KnownSettings) {
        if (key == QLatin1String(setting.key) && allowedSettings(fault.kind).contains(key))
            return &setting;
    }
    return nullptr;
}

QString settingText(const Fault& fault, const QString& key) {
    if (key == QLatin1String("ms"))
        return QString::number(fault.ms);
    if (key == QLatin1String("at"))
        return QString::number(fault.at);
    if (key == QLatin1String("bytes"))
        return QString::fromLatin1(trace::escapedText(fault.bytes));
    return fault.value ? QString::number(*fault.value) : QString::fromLatin1("next");
}

} // namespace

QString faultName(Fault::Kind kind) {
    return QString::fromLatin1(shapeOf(kind).name);
}

QString describeFault(const Fault& fault) {
    QString text = faultName(fault.kind);
    for (const QString& key : ownSettings(fault.kind))
        text += QString::fromLatin1(" %1=%2").arg(key, settingText(fault, key));
    return text;
}

Result<Fault> makeFault(const QString& name) {
    QStringList names;
    for (const KindShape& shape : KindShapes) {
        names += QString::fromLatin1(shape.name);
        if (name != names.last())
            continue;
        Fault fault;
        fault.kind = shape.kind;
        fault.ms = shape.default_ms;
        fault.bytes = QByteArray("\xFF\x00", 2);
        if (shape.kind == Fault::Kind::EndCode)
            fault.value = DefaultEndCode;
        return fault;
    }
    return Failure(QString::fromLatin1("unknown kind \"%1\"; the kinds are %2")
                       .arg(name, names.join(QLatin1String(", "))));
}

Result<void> applyFaultSetting(Fault& fault, const QString& key, const QString& value) {
    const Setting* setting = findSetting(fault, key);
    if (!setting)
        return Failure(QString::fromLatin1("\"%1\" takes no \"%2\"; it takes %3")
                           .arg(faultName(fault.kind), key,
                                allowedSettings(fault.kind).join(QLatin1String(", "))));
    if (!setting->store(fault, value))
        return Failure(QString::fromLatin1("%1 = \"%2\" must be %3")
                           .arg(key, value, QLatin1String(setting->must_be)));
    return {};
}

Result<void> checkFault(const Fault& fault) {
    const int ways = int(fault.on > 0) + int(fault.every > 0) + int(fault.chance >= 0);
    if (ways > 1)
        return Failure(QStringLiteral("only one of on, every and chance can be given"));
    return {};
}

Result<Fault> parseFault(const QString& text) {
    Result<Fault> fault = makeFault(specHead(text));
    if (!fault)
        return fault;
    const Result<SpecSettings> settings = specSettings(text);
    if (!settings)
        return Failure(settings.error());
    for (const auto& [key, value] : *settings) {
        if (const Result<void> applied = applyFaultSetting(*fault, key, value); !applied)
            return Failure(applied.error());
    }
    return checkFault(*fault).map([&] { return *fault; });
}

} // namespace simulator
