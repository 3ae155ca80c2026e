#include "host/project/spelling.h"

#include <gtest/gtest.h>

using namespace host;

namespace {

const QStringList Keys = {QStringLiteral("address"), QStringLiteral("name"),
                          QStringLiteral("unit")};

} // namespace

TEST(Spelling, FindsTheNearestWord) {
    EXPECT_EQ(nearestSpelling(QStringLiteral("adress"), Keys), QStringLiteral("address"));
    EXPECT_EQ(nearestSpelling(QStringLiteral("NAME"), Keys), QStringLiteral("name"));
    EXPECT_EQ(nearestSpelling(QStringLiteral("unti"), Keys), QStringLiteral("unit")) << "swapped";
    EXPECT_EQ(nearestSpelling(QStringLiteral("link"), Keys), QString());
    EXPECT_EQ(nearestSpelling(QStringLiteral("units"), Keys), QStringLiteral("unit"));
}

TEST(Spelling, ListsWhatIsKnownWhenNothingIsNear) {
    EXPECT_EQ(spellingHint(QStringLiteral("zzzzzz"), Keys),
              QStringLiteral("; known are address, name, unit"));
    EXPECT_EQ(spellingHint(QStringLiteral("nmae"), {}), QString());
}
