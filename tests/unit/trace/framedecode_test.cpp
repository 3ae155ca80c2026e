#include "trace/escapedtext.h"
#include "trace/framedecode.h"

#include <gtest/gtest.h>

using trace::Direction;

namespace {

struct Row {
    const char* wire; // escaped
    const char* fields;
    const char* checksum;
};

void expectRows(Direction direction, const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        SCOPED_TRACE(row.wire);
        const QByteArray bytes = trace::unescapedBytes(row.wire).value();
        EXPECT_EQ(trace::describeFrame(direction, bytes).toStdString(), row.fields);
        EXPECT_EQ(trace::describeChecksum(bytes).toStdString(), row.checksum);
    }
}

} // namespace

TEST(FrameDecode, Requests) {
    expectRows(
        Direction::Request,
        {
            {"<02>0100XRN00LL00002016<03>C1<0D><0A>", "RN station=1 items=1 first=00002016", "ok"},
            {"<02>0100XRN00LL00002016<03>C2<0D><0A>", "RN station=1 items=1 first=00002016",
             "bad found=C2 expected=C1"},
            {"<02>FF00XRN00LL0000000100000002<03>1C<0D><0A>",
             "RN station=255 items=2 first=00000001", "ok"},
            {"<02>0200XWGLL000010000000000100000002<03>27<0D><0A>",
             "WG station=2 items=2 first=00001000", "ok"},
            {"<02>0100XWN00LL0000201200000001<03>3F<0D><0A>", "WN station=1 items=1 first=00002012",
             "ok"},
            {"<02>0100XWN00LL00002012000000<03>A0<0D><0A>",
             "WN station=1 items=0 first=00002012 cut", "ok"},
            {"<02>0100XRN00LL<03>4A<0D><0A>", "RN station=1 items=0 first=", "ok"},
            {"<02>0100XWGLL0000<03>EC<0D><0A>", "WG station=1 items=0 first=0000 cut", "ok"},
        });
}

TEST(FrameDecode, Replies) {
    expectRows(Direction::Reply,
               {
                   {"<02>0100X00<03>82<0D><0A>", "reply station=1 end=00 data=0", "ok"},
                   {"<02>0100X00000000C8<03>E7<0D><0A>", "reply station=1 end=00 data=1", "ok"},
                   {"<02>0300X4A<03>6B<0D><0A>", "reply station=3 end=4A data=0", "ok"},
                   {"<02>0100X00000000<03>62<0D><0A>", "reply station=1 end=00 data=0 cut", "ok"},
                   {"<02>0100X00<03>G?<0D><0A>", "reply station=1 end=00 data=0",
                    "bad found=G? expected=82"},
               });
}

TEST(FrameDecode, BytesThatAreNoFrame) {
    expectRows(
        Direction::Request,
        {
            {"", "unknown bytes=0", "none"},
            {"<02>0100XRN00LL00002016<03>C1<0D>", "unknown bytes=24", "none"},
            {"<FF><02>0100XRN00LL00002016<03>C1<0D><0A>", "unknown bytes=26",
             "bad found=C1 expected=C2"},
            {"<02>0100XRN00LL0000201600C1<0D><0A>", "unknown bytes=26", "bad found=C1 expected=64"},
            {"<02>ZZ00XRN00LL00002016<03>6E<0D><0A>", "unknown bytes=25", "ok"},
            {"<02>0100XQQ00LL00002016<03>BF<0D><0A>", "unknown bytes=25", "ok"},
        });
    expectRows(Direction::Reply, {
                                     {"<02>0100X0<03>12<0D><0A>", "unknown bytes=12", "none"},
                                     {"<0D><0A>", "unknown bytes=2", "none"},
                                 });
}
