#include "host/transfer/recipeslots.h"

#include <QSet>

namespace host {

namespace {

constexpr quint32 FirstSlot = 0x1000;
constexpr quint32 SlotDistance = 0x20;
constexpr int TagTextLength = 6; // of "NA13E0": the driver compares texts

bool isOfStation(const TagDefinition& tag, int link_id, int station) {
    return tag.link_id == link_id && tag.station == station &&
           tag.address.kind == AddressKind::Data;
}

/** Double words that the driver will ask for. */
QSet<quint32> knownDwords(const Project& project, int link_id, int station) {
    QSet<quint32> known;
    for (const TagDefinition& tag : project.tags) {
        if (!isOfStation(tag, link_id, station))
            continue;
        for (int i = 0; i < tag.dwords(); ++i)
            known.insert(tag.address.dword + quint32(i));
    }
    return known;
}

/** Double words of tags that are written as the driver looks for programs. */
QSet<quint32> namedDwords(const Project& project, int link_id, int station) {
    QSet<quint32> named;
    for (const TagDefinition& tag : project.tags) {
        if (!isOfStation(tag, link_id, station) || tag.address.station ||
            !tag.address.text.startsWith(QLatin1String("NA")) ||
            tag.address.text.size() != TagTextLength)
            continue;
        for (int i = 0; i < tag.dwords(); ++i)
            named.insert(tag.address.dword + quint32(i));
    }
    return named;
}

TagDefinition slotTag(int number, int link_id, int station) {
    TagDefinition tag;
    tag.name = QString::fromLatin1("program %1").arg(number);
    tag.address =
        *parseProjectAddress(QString::fromLatin1("NA%1").arg(recipeSlotAddress(number), 0, 16));
    tag.type = *tagTypeByName(QStringLiteral("dword"));
    tag.count = RecipeColumns;
    tag.link_id = link_id;
    tag.station = station;
    return tag;
}

bool isWhole(int number, const QSet<quint32>& known) {
    for (int i = 0; i < RecipeColumns; ++i) {
        if (!known.contains(recipeSlotAddress(number) + quint32(i)))
            return false;
    }
    return true;
}

} // namespace

quint32 recipeSlotAddress(int number) {
    return FirstSlot + SlotDistance * quint32(number - 1);
}

QStringList recipeSlotItems() {
    QStringList items;
    for (int number = 1; number <= RecipePrograms; ++number)
        items.append(QString::fromLatin1("NA%1:dword:%2")
                         .arg(recipeSlotAddress(number), 0, 16)
                         .arg(RecipeColumns));
    return items;
}

RecipeSlots recipeSlots(const Project& project, int link_id, int count) {
    RecipeSlots found;
    found.link_id = link_id;
    found.station = project.defaultStation(link_id);
    const QSet<quint32> known = knownDwords(project, link_id, found.station);
    const QSet<quint32> named = namedDwords(project, link_id, found.station);
    for (int number = 1; number <= count; ++number) {
        if (!named.contains(recipeSlotAddress(number))) {
            found.unknown.append(number);
        } else if (!isWhole(number, known)) {
            found.partial.append(number);
        } else {
            found.tags.append(slotTag(number, link_id, found.station));
            found.numbers.append(number);
        }
    }
    return found;
}

QVector<int> linksWithRecipes(const Project& project) {
    QVector<int> links;
    for (const LinkDefinition& link : project.links) {
        if (recipeSlots(project, link.id, RecipePrograms).unknown.size() < RecipePrograms)
            links.append(link.id);
    }
    return links;
}

QString numberRanges(const QVector<int>& numbers) {
    QStringList ranges;
    for (int from = 0; from < numbers.size();) {
        int to = from;
        while (to + 1 < numbers.size() && numbers[to + 1] == numbers[to] + 1)
            ++to;
        ranges.append(from == to ? QString::number(numbers[from])
                                 : QString::fromLatin1(to == from + 1 ? "%1, %2" : "%1 to %2")
                                       .arg(numbers[from])
                                       .arg(numbers[to]));
        from = to + 1;
    }
    return ranges.join(QLatin1String(", "));
}

} // namespace host
