#include "simulator/framereader.h"

#include "tests/unit/simulator/wire.h"

#include <gtest/gtest.h>

#include <vector>

using simulator::FrameReader;

namespace {

const char AnyRequest[] = "<02>0100XRN00LL00002016<03>C1<0D><0A>";

std::vector<std::string> framesIn(FrameReader& reader, const QByteArray& bytes) {
    std::vector<std::string> frames;
    for (char byte : bytes) {
        if (const auto frame = reader.take(byte))
            frames.push_back(shown(*frame));
    }
    return frames;
}

std::vector<std::string> framesIn(const QByteArray& bytes) {
    FrameReader reader;
    return framesIn(reader, bytes);
}

using Frames = std::vector<std::string>;

} // namespace

TEST(SimulatorFrameReader, TakesAFrameInAnyTwoParts) {
    const QByteArray bytes = wire(AnyRequest);
    for (int split = 0; split <= bytes.size(); ++split) {
        FrameReader reader;
        Frames frames = framesIn(reader, bytes.left(split));
        for (const std::string& frame : framesIn(reader, bytes.mid(split)))
            frames.push_back(frame);
        EXPECT_EQ(frames, Frames{AnyRequest}) << "split at " << split;
        EXPECT_EQ(reader.droppedBytes(), 0u);
    }
}

TEST(SimulatorFrameReader, SeparatesGluedFrames) {
    EXPECT_EQ(framesIn(wire(AnyRequest).repeated(3)), (Frames{AnyRequest, AnyRequest, AnyRequest}));
}

TEST(SimulatorFrameReader, PassesOverNoiseBetweenFrames) {
    FrameReader reader;
    EXPECT_EQ(
        framesIn(reader, wire("<00>abc<0A>") + wire(AnyRequest) + wire("<FF>") + wire(AnyRequest)),
        (Frames{AnyRequest, AnyRequest}));
    EXPECT_EQ(reader.droppedBytes(), 6u);
}

TEST(SimulatorFrameReader, BeginsAnewAtAnStx) {
    FrameReader reader;
    EXPECT_EQ(framesIn(reader, wire("<02>0100XRN") + wire("<02>") + wire(AnyRequest)),
              Frames{AnyRequest});
    EXPECT_EQ(reader.droppedBytes(), 9u);
}

TEST(SimulatorFrameReader, GivesUpAFrameThatNeverEnds) {
    FrameReader reader;
    EXPECT_EQ(framesIn(reader, '\x02' + QByteArray(5000, '0')), Frames());
    EXPECT_EQ(reader.droppedBytes(), 5001u);
    EXPECT_EQ(framesIn(reader, wire(AnyRequest)), Frames{AnyRequest});
}
