#include "runtime/drivers/dmc50v3/replybuffer.h"

#include "tests/support/scriptedport.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

/** A port at which @p bytes have arrived. */
struct ReceivingPort : ScriptedPort {
    explicit ReceivingPort(const QByteArray& bytes, int chunk = 0) {
        receive(bytes);
        m_chunk = chunk;
    }
};

QByteArray received(const ReplyBuffer& buffer) {
    return QByteArray(buffer.reply().bytes, buffer.reply().length);
}

bool isZeroBehind(const CPLReply& reply) {
    return std::all_of(reply.bytes + reply.length, reply.bytes + CPLBufferSize,
                       [](char c) { return c == '\0'; });
}

} // namespace

TEST(ReplyBuffer, StartsEmptyAndZero) {
    const ReplyBuffer buffer;
    EXPECT_EQ(buffer.reply().length, 0);
    EXPECT_TRUE(isZeroBehind(buffer.reply()));
}

TEST(ReplyBuffer, CollectsPiecesUntilOneEndsWithALineFeed) {
    ReceivingPort port("ab\ncde\nf", 2);
    ReplyBuffer buffer;
    EXPECT_EQ(buffer.readRspUntilLF(port), 8); // "ab", "\nc", "de", "\nf", silence
    EXPECT_EQ(received(buffer), QByteArray("ab\ncde\nf"));

    ReceivingPort whole_lines("ab\nde\nf", 3);
    buffer.resetRspBuf();
    EXPECT_EQ(buffer.readRspUntilLF(whole_lines), 3);
    EXPECT_EQ(received(buffer), QByteArray("ab\n"));
}

TEST(ReplyBuffer, ASecondReadAppendsAndCountsItsOwnBytes) {
    ReceivingPort port("ab\nde\n", 3);
    ReplyBuffer buffer;
    EXPECT_EQ(buffer.readRspUntilLF(port), 3);
    EXPECT_EQ(buffer.readRspUntilLF(port), 3);
    EXPECT_EQ(received(buffer), QByteArray("ab\nde\n"));
}

TEST(ReplyBuffer, AResetForgetsEveryByte) {
    ReceivingPort port(QByteArray(419, 'x') + '\n');
    ReplyBuffer buffer;
    buffer.readRspUntilLF(port);
    buffer.resetRspBuf();
    EXPECT_EQ(buffer.reply().length, 0);
    EXPECT_TRUE(isZeroBehind(buffer.reply()));
}

TEST(ReplyBuffer, ReadsNoMoreThanItHolds) {
    ReceivingPort port(QByteArray(500, 'x'), 100);
    ReplyBuffer buffer;
    EXPECT_EQ(buffer.readRspUntilLF(port), 420);
    EXPECT_EQ(buffer.reply().length, 420);
}

TEST(ReplyBufferDeath, AReadIntoAFullBufferEndsTheProgram) {
    ReceivingPort port(QByteArray(421, 'x'));
    ReplyBuffer buffer;
    buffer.readRspUntilLF(port);
    EXPECT_DEATH(buffer.readRspUntilLF(port), "\"m_rsp_len < int\\(m_rsp_buf.size\\(\\)\\)\"");
}
