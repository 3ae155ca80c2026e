#include "runtime/drivers/polling/writesender.h"

#include "runtime/drivers/polling/writequeue.h"
#include "tests/support/memoryline.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

class WriteSenderTest : public ::testing::Test {
protected:
    explicit WriteSenderTest(quint32 retries = 0) : m_sender(m_line, m_error, m_queue, retries) {}

    /** Queues @p count pairs from address 100 on. */
    void queue(quint8 station, int count) {
        for (int i = 0; i < count; ++i) {
            const AddrArg pair = {100 + quint32(i), 0};
            ASSERT_TRUE(m_queue.push(station, &pair, 1));
        }
    }

    CommError m_error;
    MemoryLine m_line{m_error};
    WriteQueue m_queue{m_error};
    WriteSender m_sender;
};

class WriteSenderRetries : public WriteSenderTest {
protected:
    WriteSenderRetries() : WriteSenderTest(2) {}
};

} // namespace

TEST_F(WriteSenderTest, SendsAllInBatchesWithAPauseBeforeEach) {
    queue(2, 1);
    queue(1, 60);
    EXPECT_TRUE(m_sender.sendAll());
    EXPECT_EQ(m_line.takeLog(),
              MemoryLine::Log({"pause", "write 1:100 x25", "pause", "write 1:125 x25", "pause",
                               "write 1:150 x10", "pause", "write 2:100 x1"}));
    EXPECT_TRUE(m_queue.isEmpty());
}

TEST_F(WriteSenderTest, WithNothingToSendTheLineIsQuiet) {
    EXPECT_TRUE(m_sender.sendAll());
    EXPECT_TRUE(m_line.takeLog().empty());
}

TEST_F(WriteSenderTest, WhatIsQueuedMeanwhileGoesOutToo) {
    queue(1, 1);
    m_line.m_on_request = [this] {
        m_line.m_on_request = nullptr;
        queue(3, 2);
    };
    EXPECT_TRUE(m_sender.sendAll());
    EXPECT_EQ(m_line.takeLog(),
              MemoryLine::Log({"pause", "write 1:100 x1", "pause", "write 3:100 x2"}));
}

TEST_F(WriteSenderTest, InErrorAllWaits) {
    queue(1, 2);
    m_error.set(QString::fromLatin1("lost"));
    EXPECT_FALSE(m_sender.sendAll());
    EXPECT_TRUE(m_line.takeLog().empty());
    EXPECT_EQ(m_queue.size(1), 2);
    EXPECT_TRUE(m_error.isSet());
}

TEST_F(WriteSenderTest, AFailedBatchIsLostAndTheRestWaits) {
    queue(1, 26);
    m_line.m_failures = 1;
    EXPECT_FALSE(m_sender.sendAll());
    EXPECT_EQ(m_line.takeLog(), MemoryLine::Log({"pause", "write 1:100 x25"}));
    EXPECT_EQ(m_queue.size(1), 1);
    EXPECT_TRUE(m_error.isSet());
}

TEST_F(WriteSenderRetries, ABatchIsRepeatedAsOftenAsAllowed) {
    queue(1, 1);
    m_line.m_failures = 3;
    EXPECT_FALSE(m_sender.sendAll());
    EXPECT_EQ(m_line.takeLog(), MemoryLine::Log({"pause", "write 1:100 x1", "pause",
                                                 "write 1:100 x1", "pause", "write 1:100 x1"}));

    m_error.clear();
    queue(1, 1);
    m_line.m_failures = 2;
    EXPECT_TRUE(m_sender.sendAll());
    EXPECT_EQ(m_line.takeLog().size(), 6u);
    EXPECT_FALSE(m_error.isSet());
}

TEST_F(WriteSenderRetries, TheErrorOfAnAttemptStandsThroughThePauseBeforeTheNext) {
    queue(1, 1);
    m_line.m_failures = 2;
    std::vector<bool> errors;
    m_line.m_on_pause = [&] { errors.push_back(m_error.isSet()); };
    m_line.m_on_request = [&] { errors.push_back(m_error.isSet()); };
    EXPECT_TRUE(m_sender.sendAll());
    EXPECT_EQ(errors, std::vector<bool>({false, false, true, false, true, false}));
}
