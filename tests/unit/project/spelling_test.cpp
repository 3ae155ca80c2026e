#include "host/project/spelling.h"

#include <gtest/gtest.h>

using namespace host;

namespace {

const QStringList KEYS = {QStringLiteral("address"), QStringLiteral("name"),
                          QStringLiteral("unit")};

} // namespace

TEST(Spelling, FindsTheNearestWord) {
    EXPECT_EQ(nearestSpelling(QStringLiteral("adress"), KEYS), QStringLiteral("address"));
    EXPECT_EQ(nearestSpelling(QStringLiteral("NAME"), KEYS), QStringLiteral("name"));
    EXPECT_EQ(nearestSpelling(QStringLiteral("unti"), KEYS), QStringLiteral("unit")) << "swapped";
    EXPECT_EQ(nearestSpelling(QStringLiteral("link"), KEYS), QString());
    EXPECT_EQ(nearestSpelling(QStringLiteral("units"), KEYS), QStringLiteral("unit"));
}

TEST(Spelling, ListsWhatIsKnownWhenNothingIsNear) {
    EXPECT_EQ(spellingHint(QStringLiteral("zzzzzz"), KEYS),
              QStringLiteral("; known are address, name, unit"));
    EXPECT_EQ(spellingHint(QStringLiteral("nmae"), {}), QString());
}
