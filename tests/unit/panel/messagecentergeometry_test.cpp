#include "runtime/panel/messagecentergeometry.h"

#include <QList>

#include <gtest/gtest.h>

namespace {

typedef MessageCenterSlide Slide;

/** For a panel of 30 x 20 at the rectangle (100,200)-(399,299). */
struct Docking {
    const char* name;
    int edge;
    QPoint shown;
    QPoint hidden;
    Slide::Direction in;
    Slide::Direction out;
};

const Docking dockings[] = {
    {"Above", 0, QPoint(369, 180), QPoint(369, 301), Slide::YDecreasing, Slide::YIncreasing},
    {"Below", 1, QPoint(369, 300), QPoint(369, 180), Slide::YIncreasing, Slide::YDecreasing},
    {"Right", 2, QPoint(400, 279), QPoint(70, 279), Slide::XIncreasing, Slide::XDecreasing},
    {"Left", 3, QPoint(70, 279), QPoint(401, 279), Slide::XDecreasing, Slide::XIncreasing},
    {"BeyondTheLast", 4, QPoint(0, 0), QPoint(-30, 0), Slide::NoDirection, Slide::NoDirection},
    {"BeforeTheFirst", -1, QPoint(0, 0), QPoint(-30, 0), Slide::NoDirection, Slide::NoDirection},
};

class MessageDock : public ::testing::TestWithParam<Docking> {
protected:
    const MessageCenterDock dock{QRect(100, 200, 300, 100), GetParam().edge};
};

/** The places of five steps, the way's beginning first. */
QList<QPoint> wayOf(Slide slide, const QPoint& from) {
    QList<QPoint> way;
    way << from;
    for (int step = 1; step <= 5; ++step) {
        EXPECT_FALSE(slide.isOver()) << "before step " << step;
        way << slide.takeStepFrom(way.last());
    }
    EXPECT_TRUE(slide.isOver());
    return way;
}

} // namespace

TEST_P(MessageDock, HasAPlaceInSightAndOneOutOfIt) {
    const MessageCenterPlaces places = dock.placesOf(QSize(30, 20));
    EXPECT_EQ(GetParam().shown, places.shown);
    EXPECT_EQ(GetParam().hidden, places.hidden);
}

TEST_P(MessageDock, KnowsTheWaysBetweenThem) {
    EXPECT_EQ(GetParam().in, dock.wayIn());
    EXPECT_EQ(GetParam().out, dock.wayOut());
    EXPECT_EQ(GetParam().edge >= 0 && GetParam().edge < 4, dock.hasKnownEdge());
}

INSTANTIATE_TEST_SUITE_P(MessageCenterGeometry, MessageDock, ::testing::ValuesIn(dockings),
                         [](const ::testing::TestParamInfo<Docking>& row) {
                             return std::string(row.param.name);
                         });

TEST(MessageSlide, MovesOneCoordinateAndLosesNothingOfAWayThatFiveDoesNotDivide) {
    const QPoint from(10, 50);
    const QPoint to(17, 42); // 7 to the right, 8 up
    EXPECT_EQ(QList<QPoint>() << from << QPoint(11, 50) << QPoint(12, 50) << QPoint(13, 50)
                              << QPoint(14, 50) << QPoint(17, 50),
              wayOf(Slide(Slide::XIncreasing, from, to), from));
    EXPECT_EQ(QList<QPoint>() << from << QPoint(10, 49) << QPoint(10, 48) << QPoint(10, 47)
                              << QPoint(10, 46) << QPoint(10, 42),
              wayOf(Slide(Slide::YDecreasing, from, to), from));
}

TEST(MessageSlide, ComesBackTheSameWay) {
    const QPoint from(17, 42);
    const QPoint to(10, 50);
    EXPECT_EQ(QList<QPoint>() << from << QPoint(16, 42) << QPoint(15, 42) << QPoint(14, 42)
                              << QPoint(13, 42) << QPoint(10, 42),
              wayOf(Slide(Slide::XDecreasing, from, to), from));
    EXPECT_EQ(QList<QPoint>() << from << QPoint(17, 43) << QPoint(17, 44) << QPoint(17, 45)
                              << QPoint(17, 46) << QPoint(17, 50),
              wayOf(Slide(Slide::YIncreasing, from, to), from));
}

TEST(MessageSlide, GoesOnFromWhereverThePanelIs) {
    Slide slide(Slide::XIncreasing, QPoint(0, 0), QPoint(50, 0));
    EXPECT_EQ(QPoint(310, 7), slide.takeStepFrom(QPoint(300, 7)));
}

TEST(MessageSlide, WithoutADirectionIsOverAndLeadsNowhere) {
    Slide slides[] = {Slide(), Slide(Slide::NoDirection, QPoint(1, 2), QPoint(3, 4))};
    for (Slide& slide : slides) {
        EXPECT_TRUE(slide.isOver());
        EXPECT_EQ(QPoint(8, 9), slide.takeStepFrom(QPoint(8, 9)));
        EXPECT_TRUE(slide.isOver());
    }
}

TEST(MessageCenterHeight, IsThatOfAllRowsWhileTheyFit) {
    EXPECT_EQ(40, messageCenterHeight(0, 300));
    EXPECT_EQ(61 + 40, messageCenterHeight(1, 300));
    EXPECT_EQ(3 * 61 + 40, messageCenterHeight(3, 300));
}

TEST(MessageCenterHeight, IsThatOfWholeRowsWhenNotAllFit) {
    EXPECT_EQ(4 * 61 + 40, messageCenterHeight(5, 300));
    EXPECT_EQ(4 * 61 + 40, messageCenterHeight(100, 300));
    EXPECT_EQ(4 * 61 + 40, messageCenterHeight(100, 4 * 61 + 40));
    EXPECT_EQ(3 * 61 + 40, messageCenterHeight(100, 4 * 61 + 40 - 1));
}

TEST(MessageCenterHeight, MayOutgrowItsLimitAsRowsAreCompared60ButStacked61PixelsHigh) {
    EXPECT_EQ(4 * 61 + 40, messageCenterHeight(4, 281)); // 240 < 241
    EXPECT_EQ(3 * 61 + 40, messageCenterHeight(4, 280)); // 240 is not below 240
}

TEST(MessageCenterHeight, IsThatOfTheFrameWhenThereIsNoRoomForARow) {
    EXPECT_EQ(40, messageCenterHeight(2, 41));
    EXPECT_EQ(40, messageCenterHeight(2, 0)); // -40 / 61 is cut towards zero
    EXPECT_EQ(40 - 61, messageCenterHeight(1, 40 - 61));
}
