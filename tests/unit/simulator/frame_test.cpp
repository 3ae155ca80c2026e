#include "simulator/frame.h"

#include "tests/unit/simulator/wire.h"

#include <gtest/gtest.h>

using namespace simulator;
using State = ParsedRequest::State;
using Words = std::vector<quint32>;

namespace {

struct GoodRow {
    const char* wire;
    int station;
    int subaddress;
    Command command;
    Words addresses;
    Words values;
};

struct BadRow {
    const char* wire;
    const char* reason;
    int end_code;
};

ParsedRequest parsedText(const QByteArray& text) {
    return parseRequest(framed(text));
}

QByteArray words(int count) {
    return QByteArray("00000001").repeated(count);
}

} // namespace

TEST(SimulatorFrame, ReadsRequests) {
    const GoodRow rows[] = {
        {"<02>0100XRN00LL00002016<03>C1<0D><0A>", 1, 0, Command::ReadList, {0x2016}, {}},
        {"<02>FF00XRN00LL0000000100000002<03>1C<0D><0A>", 255, 0, Command::ReadList, {1, 2}, {}},
        {"<02>0100XWN00LL0000201200000001<03>3F<0D><0A>", 1, 0, Command::WriteList, {0x2012}, {1}},
        {"<02>0200XWGLL000010000000000100000002<03>27<0D><0A>",
         2,
         0,
         Command::WriteGroup,
         {0x1000, 0x1001},
         {1, 2}},
        {"<02>0A1FXRN00LLFFFFFFFF<03>F3<0D><0A>", 10, 31, Command::ReadList, {0xFFFFFFFF}, {}},
    };
    for (const GoodRow& row : rows) {
        SCOPED_TRACE(row.wire);
        const ParsedRequest parsed = parseRequest(wire(row.wire));
        EXPECT_EQ(parsed.state, State::Good) << parsed.reason;
        EXPECT_EQ(parsed.request.station, row.station);
        EXPECT_EQ(parsed.request.subaddress, row.subaddress);
        EXPECT_EQ(parsed.request.command, row.command);
        EXPECT_EQ(parsed.request.addresses, row.addresses);
        EXPECT_EQ(parsed.request.values, row.values);
    }
}

TEST(SimulatorFrame, StaysSilentToWhatIsNoRequestForAnyone) {
    const BadRow rows[] = {
        {"", "not a frame", 0},
        {"<02><0D><0A>", "not a frame", 0},
        {"0100XRN00LL00002016<03>C1<0D><0A>", "not a frame", 0},
        {"<02>0100XRN00LL00002016<03>C1<0A>", "not a frame", 0},
        {"<02>0100XRN00LL00002016<03>C2<0D><0A>", "bad checksum", 0},
        {"<02>0100XRN00LL00002016<03>c1<0D><0A>", "bad checksum", 0},
        {"<02>0200XRN00LL00002016<03>C1<0D><0A>", "bad checksum", 0},
        {"<02>G100XRN00LL00002016<03>AA<0D><0A>", "no station", 0},
        {"<02>010 XRN00LL00002016<03>D1<0D><0A>", "no station", 0},
    };
    for (const BadRow& row : rows) {
        SCOPED_TRACE(row.wire);
        const ParsedRequest parsed = parseRequest(wire(row.wire));
        EXPECT_EQ(parsed.state, State::Unreadable);
        EXPECT_STREQ(parsed.reason, row.reason);
        EXPECT_EQ(parsed.bad_checksum, std::string(row.reason) == "bad checksum");
    }
}

TEST(SimulatorFrame, RefusesBadContentsWithAnEndCodeOfItsOwn) {
    const BadRow rows[] = {
        {"<02>0100XQQ00LL00002016<03>BF<0D><0A>", "unknown command", 0x41},
        {"<02>0100<03>3A<0D><0A>", "unknown command", 0x41},
        {"<02>0100XRN00LL0000201<03>F7<0D><0A>", "malformed items", 0x42},
        {"<02>0100XRN00LL0000201g<03>90<0D><0A>", "malformed items", 0x42},
        {"<02>0100XRN00LL0000201a<03>96<0D><0A>", "malformed items", 0x42},
        {"<02>0100XWN00LL00002012<03>C0<0D><0A>", "malformed items", 0x42},
        {"<02>0100XRN00LL<03>4A<0D><0A>", "item count out of range", 0x43},
        {"<02>0100XWN00LL<03>45<0D><0A>", "item count out of range", 0x43},
        {"<02>0100XWGLL<03>AC<0D><0A>", "item count out of range", 0x43},
        {"<02>0100XWGLL00001000<03>2B<0D><0A>", "item count out of range", 0x43},
    };
    for (const BadRow& row : rows) {
        SCOPED_TRACE(row.wire);
        const ParsedRequest parsed = parseRequest(wire(row.wire));
        EXPECT_EQ(parsed.state, State::Refused);
        EXPECT_EQ(parsed.request.station, 1);
        EXPECT_STREQ(parsed.reason, row.reason);
        EXPECT_EQ(int(parsed.end_code), row.end_code);
    }
}

TEST(SimulatorFrame, TakesAsManyItemsAsFitAndNotOneMore) {
    EXPECT_EQ(parsedText("0100XRN00LL" + words(50)).state, State::Good);
    EXPECT_EQ(parsedText("0100XRN00LL" + words(51)).end_code, EndItemCount);
    EXPECT_EQ(parsedText("0100XWN00LL" + words(50)).state, State::Good);
    EXPECT_EQ(parsedText("0100XWN00LL" + words(52)).end_code, EndItemCount);
    EXPECT_EQ(parsedText("0100XWGLL" + words(51)).state, State::Good);
    EXPECT_EQ(parsedText("0100XWGLL" + words(52)).end_code, EndItemCount);
}

TEST(SimulatorFrame, TheLongestRequestIsAsLongAsStated) {
    EXPECT_EQ(framed("0100XWGLL" + words(51)).size(), LongestRequest);
}

TEST(SimulatorFrame, PacksReplies) {
    const std::pair<Reply, const char*> rows[] = {
        {{1, 0, EndOk, {}}, "<02>0100X00<03>82<0D><0A>"},
        {{1, 0, EndOk, {200}}, "<02>0100X00000000C8<03>E7<0D><0A>"},
        {{3, 0, 0x4A, {}}, "<02>0300X4A<03>6B<0D><0A>"},
        {{0xFF, 0x1F, EndOk, {0xFFFFFFFF, 0x12345678}},
         "<02>FF1FX00FFFFFFFF12345678<03>6C<0D><0A>"},
    };
    for (const auto& [reply, bytes] : rows)
        EXPECT_EQ(shown(packReply(reply)), bytes);
}
