// What can happen to a reply on the line, whichever request it answers: a fault
// never gives a wrong value, and the next exchange is good again.
#include "runtime/drivers/byteorder.h"
#include "tests/unit/dmc50v3/pollingfixture.h"

namespace {

const quint32 Address = 0x1000;

/** One address of station 1 is read (RN) or written (WG, WN) again and again, each
 *  time with a value that it never had before. */
class ReplyFaults : public PollingFixture, public ::testing::WithParamInterface<const char*> {
protected:
    ReplyFaults() { startSession(1); }

    bool exchange() {
        const QByteArray command = GetParam();
        m_port.forgetCalls();
        m_thread->clearError();
        ++m_value;
        if (command == "WG")
            return writeGroup();
        if (command == "WN")
            return m_thread->writeDWord(1, AddrArg{Address, m_value}) && m_probe->sendWrites();
        m_controller.setValue(1, Address, m_value);
        m_probe->pollingScan();
        return !m_thread->hasError();
    }

    /** A write of consecutive double words, which the thread itself never sends. */
    bool writeGroup() {
        const QByteArray image = intToByteArray(int(m_value));
        char frame[CPLBufferSize];
        const int length = CPLPackWGCmd(frame, CPLBufferSize, 1, 0, Address,
                                        reinterpret_cast<const uchar*>(image.constData()), 1);
        QString error;
        const bool ok = checkWriteRsp(m_probe->line().exchange(frame, length), 1, Address, error);
        if (!ok)
            m_thread->setCommError(error);
        return ok;
    }

    /** The value of the last exchange is where it belongs. */
    bool hasArrived() const {
        quint32 value = m_controller.value(1, Address);
        if (QByteArray(GetParam()) == "RN" &&
            !m_thread->getDWordFromDataCacheMap(1, Address, value))
            return false;
        return value == m_value;
    }

    bool goodExchange() {
        answer();
        return exchange() && hasArrived();
    }

    int replySize() const {
        return cplFrame(QByteArray(GetParam()) == "RN" ? "0100X0012345678" : "0100X00").size();
    }

    quint32 m_value = 0x12345678;
};

} // namespace

TEST_P(ReplyFaults, EverySplitOfAReplyIsPutTogether) {
    for (int chunk = 1; chunk <= replySize(); ++chunk) {
        m_port.m_chunk = chunk;
        EXPECT_TRUE(goodExchange()) << "pieces of " << chunk;
    }
}

TEST_P(ReplyFaults, EveryTruncationFails) {
    for (int size = 0; size < replySize(); ++size) {
        m_port.setAnswer(
            [&](const QByteArray& request) { return m_controller.answer(request).left(size); });
        EXPECT_FALSE(exchange()) << "the first " << size;
        EXPECT_TRUE(goodExchange()) << "after the first " << size;
    }
}

TEST_P(ReplyFaults, NoCorruptedByteIsTakenForAnotherOutcome) {
    const int trailer = replySize() - 4; // checksum, CR, LF
    for (int at = 0; at < replySize(); ++at) {
        for (int byte = 0; byte < 256; ++byte) {
            m_port.m_chunk = byte % 2; // as a whole, or byte by byte
            bool changed = false;
            m_port.setAnswer([&](const QByteArray& request) {
                QByteArray reply = m_controller.answer(request);
                changed = reply.at(at) != char(byte);
                reply[at] = char(byte);
                return reply;
            });
            const bool accepted = exchange();
            ASSERT_FALSE(accepted && changed && at < trailer) << "byte " << at << " as " << byte;
            ASSERT_TRUE(!accepted || hasArrived()) << "byte " << at << " as " << byte;
            ASSERT_TRUE(goodExchange()) << "after byte " << at << " as " << byte;
        }
    }
}

TEST_P(ReplyFaults, AByteTakenForTheLineFeedLeavesNothingToTheNextExchange) {
    m_port.m_chunk = 1;
    for (int at = 0; at < replySize() - 4; ++at) {
        m_port.setAnswer([&](const QByteArray& request) {
            return m_controller.answer(request).replace(at, 1, "\n");
        });
        EXPECT_FALSE(exchange()) << "byte " << at;
        EXPECT_TRUE(goodExchange()) << "after byte " << at;
    }
}

TEST_P(ReplyFaults, ALateReplyAnswersNoLaterRequest) {
    QByteArray late;
    m_port.setAnswer([&](const QByteArray& request) {
        late = m_controller.answer(request);
        return QByteArray();
    });
    EXPECT_FALSE(exchange());
    m_port.receive(late);
    EXPECT_FALSE(exchange());
    EXPECT_TRUE(m_thread->getLastError().endsWith(QLatin1String("DMC50 no response")));
    m_port.receive(late);
    EXPECT_TRUE(goodExchange());
}

INSTANTIATE_TEST_SUITE_P(Commands, ReplyFaults, ::testing::Values("RN", "WG", "WN"),
                         [](const ::testing::TestParamInfo<const char*>& row) {
                             return std::string(row.param);
                         });
