#include "host/line/question.h"

#include "runtime/drivers/dmc50v3/cplreply.h"
#include "runtime/drivers/dmc50v3/dmc50_cpl.h"
#include "tests/support/memorycontroller.h"

#include <gtest/gtest.h>

#include <random>

using namespace host;

TEST(QuestionTest, KnowsWhatARequestAsksFor) {
    const auto list = readQuestion(cplFrame("0A00XRN00LL0000100000001002"));
    ASSERT_TRUE(list);
    EXPECT_EQ(list->station, 10);
    EXPECT_EQ(list->subaddress, QByteArray("00"));
    EXPECT_FALSE(list->is_write);
    EXPECT_EQ(list->addresses, std::vector<quint32>({0x1000, 0x1002}));
    EXPECT_EQ(list->values(), 2);
    EXPECT_EQ(list->replyLength(), 29);

    const auto pairs = readQuestion(cplFrame("0100XWN00LL0000100000000007000010020000000A"));
    ASSERT_TRUE(pairs);
    EXPECT_TRUE(pairs->is_write);
    EXPECT_EQ(pairs->addresses, std::vector<quint32>({0x1000, 0x1002}));
    EXPECT_EQ(pairs->values(), 0);
    EXPECT_EQ(pairs->replyLength(), 13);

    const auto group = readQuestion(cplFrame("0100XWGLL000010000000000700000008"));
    ASSERT_TRUE(group);
    EXPECT_EQ(group->addresses, std::vector<quint32>({0x1000, 0x1001}));
}

TEST(QuestionTest, KnowsNothingOfOtherFrames) {
    for (const QByteArray& frame :
         {QByteArray("ask\r\n"), cplFrame("0100XRN00LL"), cplFrame("0100XRN00LL0000100"),
          cplFrame("0100XRS00001000"), QByteArray()})
        EXPECT_FALSE(readQuestion(frame)) << frame.toStdString();
}

TEST(QuestionTest, MakesARequestForAsManyValuesAsWanted) {
    const Question question =
        *readQuestion(cplFrame("FF00XWN00LL000010000000000700001002FFFFFFFF"));
    EXPECT_EQ(makeReadRequest(question, 1), cplFrame("FF00XRN00LL00001000"));
    EXPECT_EQ(makeReadRequest(question, 3), cplFrame("FF00XRN00LL000010000000100200001000"));
}

TEST(WholeReplyTest, IsOneFrameAndNothingElse) {
    const QByteArray good = cplFrame("0100X000000000A0000000b");
    const auto reply = readWholeReply(good);
    ASSERT_TRUE(reply);
    EXPECT_EQ(reply->station, 1);
    EXPECT_EQ(reply->values, 2);
    EXPECT_FALSE(reply->refused);
    EXPECT_TRUE(readWholeReply(cplFrame("0100X41"))->refused);
    const QList<QByteArray> bad = {good + '\n',         "x" + good,
                                   good.left(29 - 1),   QByteArray(good).replace("0b", "0c"),
                                   good + good,         cplFrame("0100X0000000000A0000000b"),
                                   cplFrame("0100X4z"), cplFrame("01 0X00"),
                                   QByteArray()};
    for (const QByteArray& bytes : bad)
        EXPECT_FALSE(readWholeReply(bytes)) << bytes.toStdString();
}

/** The driver's own judgement of the same bytes must never be milder. */
TEST(PassesForGoodTest, JudgesAsTheDriverDoes) {
    std::mt19937 random(7);
    int passed = 0;
    for (int i = 0; i < 200000; ++i) {
        QByteArray bytes = cplFrame(i % 3 == 0 ? "0100X0000001234" : "0100X00");
        for (int changes = int(random() % 4); changes > 0; --changes)
            bytes[int(random() % unsigned(bytes.size()))] = char("\0"
                                                                 "0xX1fFgG\n\x80"[random() % 11]);
        if (random() % 4 == 0)
            bytes.truncate(int(random() % unsigned(bytes.size() + 1)));
        std::array<char, CPLBufferSize> buffer = {};
        std::copy(bytes.begin(), bytes.end(), buffer.begin());
        QString error;
        const bool driver = checkReadRsp({buffer.data(), bytes.size()}, 1, 0, error);
        ASSERT_EQ(passesForGood(bytes, 1), driver) << bytes.toHex().toStdString();
        passed += driver;
    }
    EXPECT_GT(passed, 1000);
    EXPECT_LT(passed, 199000);
}
