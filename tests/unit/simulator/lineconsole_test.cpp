#include "simulator/lineconsole.h"

#include "simulator/line.h"
#include "tests/support/errorof.h"
#include "tests/unit/simulator/lineclient.h"
#include "tests/unit/simulator/wire.h"

#include <gtest/gtest.h>

using namespace simulator;

namespace {

LineSettings twoStations() {
    LineSettings settings;
    settings.stations = {1, 2};
    return settings;
}

class SimulatorLineConsole : public ::testing::Test {
protected:
    std::string execute(const char* command) {
        return shown(m_console.execute(QLatin1String(command)));
    }

    Line m_line{makePtyPort(), twoStations()};
    LineConsole m_console{m_line};
};

} // namespace

TEST_F(SimulatorLineConsole, ShowsAndChangesMemory) {
    EXPECT_EQ(execute("set 2 0x10 -1"), "0x00000010 0xFFFFFFFF 4294967295");
    EXPECT_EQ(execute("  dump 2  15 2 "), "0x0000000F 0x00000000 0\n"
                                          "0x00000010 0xFFFFFFFF 4294967295");
    EXPECT_EQ(execute("dump 1 0x10 1"), "0x00000010 0x00000000 0");
}

TEST_F(SimulatorLineConsole, MakesStationsFailAndRecover) {
    ASSERT_EQ(shown(errorOf(m_line.start())), "");
    LineClient client;
    ASSERT_TRUE(client.open(m_line.devicePath()));
    EXPECT_EQ(execute("station 1 end-code:value=9"), "station 1: end-code value=9");
    EXPECT_EQ(shown(client.exchange(readRequest(1, 0, 1), 13)), shown(framed("0100X09")));
    EXPECT_EQ(execute("station 1 silent"), "station 1: silence");
    client.write(readRequest(1, 0, 1));
    EXPECT_EQ(shown(client.exchange(readRequest(2, 0, 1), 21)), shown(framed("0200X0000000000")));
    EXPECT_EQ(execute("station 1 ok"), "station 1: ok");
    EXPECT_EQ(shown(client.exchange(readRequest(1, 0, 1), 21)), shown(framed("0100X0000000000")));
    m_line.stop();
    EXPECT_EQ(execute("counters"), "reads 4\nwrites 0\nrefused 0\nreplies 3\nfaults 2\n"
                                   "bad checksums 0\nunreadable 0\nother stations 0\n"
                                   "noise bytes 0\nbytes received 100\nbytes sent 55");
}

TEST_F(SimulatorLineConsole, SaysWhatItTakes) {
    const std::pair<const char*, const char*> rows[] = {
        {"", ""},
        {"station 1", "error: must be station STATION ok|silent|FAULT"},
        {"station 3 ok", "error: there is no station \"3\" on this line"},
        {"station x ok", "error: there is no station \"x\" on this line"},
        {"station 1 silence:ms=1", "error: \"silence\" takes no \"ms\"; it takes station, command, "
                                   "on, every, chance, count"},
        {"dump 1 0x10", "error: must be dump STATION ADDRESS COUNT, COUNT from 1 to 1000"},
        {"dump 1 0x10 0", "error: must be dump STATION ADDRESS COUNT, COUNT from 1 to 1000"},
        {"dump 3 0x10 1", "error: there is no station \"3\" on this line"},
        {"set 1 0x10", "error: must be set STATION ADDRESS VALUE"},
        {"set 3 0x10 1", "error: there is no station \"3\" on this line"},
        {"help", "station STATION ok|silent|FAULT\ndump STATION ADDRESS COUNT\n"
                 "set STATION ADDRESS VALUE\ncounters\nquit"},
    };
    for (const auto& [command, answer] : rows)
        EXPECT_EQ(execute(command), answer);
    EXPECT_EQ(execute("stop").substr(0, 52),
              "error: unknown command \"stop\"; the commands are:\nsta");
    EXPECT_FALSE(m_console.wantsToQuit());
}

TEST_F(SimulatorLineConsole, Quits) {
    EXPECT_EQ(execute("quit"), "bye");
    EXPECT_TRUE(m_console.wantsToQuit());
}
