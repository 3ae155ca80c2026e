#include "simulator/faultscript.h"

#include "tests/support/errorof.h"
#include "tests/support/temporarydirectory.h"
#include "tests/unit/simulator/wire.h"

#include <gtest/gtest.h>

using namespace simulator;

namespace {

class SimulatorFaultScript : public ::testing::Test {
protected:
    Result<FaultScript> load(const char* content) {
        m_directory.write(QLatin1String("faults.toml"), content);
        return loadFaultScript(m_directory.filePath(QLatin1String("faults.toml")));
    }

    /** The error without the folder. */
    std::string error(const char* content) {
        return errorOf(load(content)).section(QLatin1Char('/'), -1).toStdString();
    }

private:
    TemporaryDirectory m_directory;
};

} // namespace

TEST_F(SimulatorFaultScript, HasFaultsAndASeed) {
    const Result<FaultScript> script = load("seed = 42\n"
                                            "[[fault]]\n"
                                            "kind = \"late\"\n"
                                            "station = 2\n"
                                            "on = 5\n"
                                            "ms = 400\n"
                                            "[[fault]]\n"
                                            "kind = \"noise-before\"\n"
                                            "chance = 0.25\n"
                                            "bytes = \"<FF>,\"\n"
                                            "command = \"RN\"\n");
    EXPECT_EQ(shown(errorOf(script)), "");
    EXPECT_EQ(script->seed, 42u);
    ASSERT_EQ(script->faults.size(), 2u);
    EXPECT_EQ(shown(describeFault(script->faults[0])), "late ms=400");
    EXPECT_EQ(script->faults[0].station, quint8(2));
    EXPECT_EQ(script->faults[0].on, 5u);
    EXPECT_EQ(shown(describeFault(script->faults[1])), "noise-before bytes=<FF>,");
    EXPECT_EQ(script->faults[1].chance, 0.25);
    EXPECT_EQ(script->faults[1].command, Command::ReadList);
}

TEST_F(SimulatorFaultScript, MayBeEmpty) {
    const Result<FaultScript> script = load("");
    EXPECT_EQ(shown(errorOf(script)), "");
    EXPECT_TRUE(script->faults.empty());
    EXPECT_FALSE(script->seed);
}

TEST_F(SimulatorFaultScript, NamesTheLineOfAMistake) {
    EXPECT_EQ(error("\nsed = 1"), "faults.toml:2: unknown key \"sed\"; there may be seed and "
                                  "[[fault]] tables");
    EXPECT_EQ(error("seed = -1"), "faults.toml:1: seed must be a number from 0 to 4294967295");
    EXPECT_EQ(error("fault = 1"), "faults.toml:1: faults must be [[fault]] tables");
    EXPECT_EQ(error("\n[[fault]]\nstation = 1"),
              "faults.toml:2: a fault must have a kind, such as kind = \"silence\"");
    EXPECT_EQ(error("[[fault]]\nkind = \"late\"\nms = \"soon\""),
              "faults.toml:3: ms = \"soon\" must be milliseconds, 0 to 3600000");
    EXPECT_EQ(error("[[fault]]\nkind = \"late\"\n\nstation = true"),
              "faults.toml:4: station must be a number or a text");
    EXPECT_EQ(error("[[fault]]\nkind = \"echo\"\nat = 1"),
              "faults.toml:3: \"echo\" takes no \"at\"; it takes station, command, on, every, "
              "chance, count");
    EXPECT_EQ(error("[[fault]]\nkind = \"echo\"\non = 1\nevery = 1"),
              "faults.toml:1: only one of on, every and chance can be given");
    EXPECT_EQ(error("[[fault]]\nkind = \"los\"").substr(0, 34),
              "faults.toml:2: unknown kind \"los\";");
}

TEST_F(SimulatorFaultScript, ReportsTheFirstMistakeAndKeepsNoFault) {
    const Result<FaultScript> script = load("[[fault]]\nkind = \"echo\"\nz = 1\n\na = 2\n");
    EXPECT_TRUE(errorOf(script).contains(QLatin1String(":3: "))) << shown(errorOf(script));
}

TEST_F(SimulatorFaultScript, ReportsBrokenTomlWithItsLine) {
    EXPECT_EQ(error("seed = 1\n[[fault]\n").substr(0, 15), "faults.toml:2: ");
}

TEST_F(SimulatorFaultScript, AMissingFileIsNamed) {
    EXPECT_EQ(shown(errorOf(loadFaultScript(QLatin1String("/nowhere/faults.toml")))),
              "/nowhere/faults.toml: No such file or directory");
}
