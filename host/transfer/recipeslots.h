#ifndef HOST_TRANSFER_RECIPESLOTS_H
#define HOST_TRANSFER_RECIPESLOTS_H

#include "host/project/project.h"
#include "host/recipe/recipeformat.h"

namespace host {

/** Where a controller keeps its programs: double words from 0x1000, one program
 *  every 0x20. Numbers count from 1. */
quint32 recipeSlotAddress(int number);

/** "NA1000:dword:24" and so on: every program as a tag of a plain project. */
QStringList recipeSlotItems();

/** What a project knows of the programs of a link's default station. */
struct RecipeSlots {
    int link_id = 0;
    int station = 0;
    QVector<int> unknown;        // programs without a tag: the driver passes them over
    QVector<int> partial;        // with tags for a part: the driver takes the rest for 0
    QVector<TagDefinition> tags; // one for each known program, in order; all 24 values
    QVector<int> numbers;        // of those
};

/** @p count programs from the first, as the driver will see them. */
RecipeSlots recipeSlots(const Project& project, int link_id, int count);

/** Links whose default station has a program. */
QVector<int> linksWithRecipes(const Project& project);

/** "1, 3 to 7, 9". */
QString numberRanges(const QVector<int>& numbers);

} // namespace host

#endif
