// The host's own access to a link, with the built plug-in and a simulator: what
// dmc50ctl does not do, writing while other stations are kept fresh.
#include "host/session/tagvalue.h"
#include "tests/e2e/sampleproject.h"

using namespace host;

namespace {

class LinkAtWork : public SampleProject {
protected:
    TagResult write(const TagDefinition& tag, int value) {
        return m_session->link(1).write(tag, *parseValue(tag, QString::number(value)));
    }
};

} // namespace

TEST_F(LinkAtWork, SaysSoonThatAWriteToASilentStationHasFailed) {
    m_line.command("station 2 silent");
    const TagDefinition set_point = tag("Gas set point");
    const QString error = write(set_point, 1).error; // the write's, or a read's that followed
    EXPECT_TRUE(error.contains("station id#2 ") && error.endsWith("DMC50 no response"))
        << qPrintable(error);
    EXPECT_TRUE(m_session->link(1).port().stationHealth(2).held_off);
    // Asked again and again, it is neither waited for nor read back.
    const quint64 silent = m_session->statistics().silent;
    EXPECT_FALSE(write(set_point, 2).ok());
    EXPECT_LE(m_session->statistics().silent, silent + 1) << "at most the probe for a person";
}

TEST_F(LinkAtWork, WritesToOneStationWhileAnotherIsSilent) {
    const TagDefinition set_point = tag("Zone 1 set point");
    m_session->poll({set_point, tag("Gas flow")}); // most requests are to the silent station
    EXPECT_EQ(write(set_point, 1).error.toStdString(), std::string());
    m_line.command("station 2 silent");
    while (m_session->link(1).stationError(2).isEmpty())
        m_session->observe(10);
    for (int value = 850; value < 852; ++value) {
        EXPECT_EQ(write(set_point, value).error.toStdString(), std::string());
        EXPECT_EQ(m_line.memory(1, 0x101001), quint32(value));
    }
    m_line.command("station 2 ok");
    while (!m_session->link(1).stationError(2).isEmpty()) // it is polled again
        m_session->observe(10);
}
