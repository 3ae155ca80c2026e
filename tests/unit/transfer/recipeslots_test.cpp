#include "host/transfer/recipeslots.h"

#include <gtest/gtest.h>

using namespace host;

namespace {

TagDefinition tagAt(const char* text, int count, int station = 1) {
    TagDefinition tag;
    tag.address = *parseProjectAddress(QLatin1String(text));
    tag.type = *tagTypeByName(QStringLiteral("dword"));
    tag.count = count;
    tag.link_id = 1;
    tag.station = station;
    return tag;
}

Project projectWith(const QVector<TagDefinition>& tags) {
    Project project;
    project.links.resize(2);
    NodeDefinition node;
    for (int id = 1; id <= 2; ++id) {
        project.links[id - 1].id = id;
        node.link_id = id;
        node.station = 1;
        node.is_default = true;
        project.nodes.append(node);
    }
    project.tags = tags;
    return project;
}

} // namespace

TEST(RecipeSlotsTest, KnowsWhereTheProgramsAre) {
    EXPECT_EQ(recipeSlotAddress(1), 0x1000u);
    EXPECT_EQ(recipeSlotAddress(RecipePrograms), 0x13e0u);
    EXPECT_EQ(recipeSlotItems().size(), RecipePrograms);
    EXPECT_EQ(recipeSlotItems().last(), QStringLiteral("NA13e0:dword:24"));
}

TEST(RecipeSlotsTest, TellsProgramsWithTagsFromOthers) {
    const RecipeSlots found =
        recipeSlots(projectWith({tagAt("NA1000", 24), tagAt("NA1040", 23)}), 1, 4);
    EXPECT_EQ(found.station, 1);
    EXPECT_EQ(found.numbers, QVector<int>({1}));
    EXPECT_EQ(found.partial, QVector<int>({3}));
    EXPECT_EQ(found.unknown, QVector<int>({2, 4}));
    ASSERT_EQ(found.tags.size(), 1);
    EXPECT_EQ(found.tags[0].command().stringKey(), QStringLiteral("NA1000_3_24"));
}

TEST(RecipeSlotsTest, TakesTheDoubleWordsOfSeveralTagsTogether) {
    const Project project =
        projectWith({tagAt("NA1000", 12), tagAt("PA000100C", 12), tagAt("NA1020", 64)});
    EXPECT_EQ(recipeSlots(project, 1, 3).numbers, QVector<int>({1, 2, 3}));
}

TEST(RecipeSlotsTest, SeesOnlyWhatTheDriverTakesForAProgram) {
    for (const TagDefinition& tag :
         {tagAt("1-NA1000", 24), tagAt("2-NA1000", 24, 2), tagAt("PA0001000", 24),
          tagAt("NA0001000", 24), tagAt("NA2000", 24)}) {
        EXPECT_EQ(recipeSlots(projectWith({tag}), 1, 1).unknown, QVector<int>({1}))
            << qPrintable(tag.address.text);
        EXPECT_EQ(linksWithRecipes(projectWith({tag})), QVector<int>());
    }
    EXPECT_EQ(linksWithRecipes(projectWith({tagAt("NA13E0", 24)})), QVector<int>({1}));
}

TEST(RecipeSlotsTest, ListsNumbersInAShortWay) {
    EXPECT_EQ(numberRanges({}), QString());
    EXPECT_EQ(numberRanges({5}), QStringLiteral("5"));
    EXPECT_EQ(numberRanges({1, 2, 4, 5, 6, 9}), QStringLiteral("1, 2, 4 to 6, 9"));
}
