#include "tests/support/runfolder.h"

#include "tests/support/temporarydirectory.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

/** The run is as if no other one had started it, below a directory of its own. */
class RunFolders : public ::testing::Test {
protected:
    RunFolders() : m_before(getenv("TMPDIR")) {
        setenv("TMPDIR", m_directory.path().toLocal8Bit().constData(), 1);
        unsetenv("DMC50_TEST_RUN");
        m_directory.makeDirectory(QString::fromStdString(m_home));
    }
    ~RunFolders() override {
        setenv("TMPDIR", m_before.c_str(), 1);
        setenv("DMC50_TEST_RUN", "yes", 1);
    }

    /** What another run has left, or still uses. */
    fs::path otherRun(const char* name) const {
        m_directory.makeDirectory(QString::fromStdString(m_home + "/" + name));
        const fs::path path = home() / name;
        fs::create_directory(path / "test");
        return path;
    }
    fs::path home() const { return fs::path(m_directory.path().toStdString()) / m_home; }

    const TemporaryDirectory m_directory;
    const std::string m_before;
    const std::string m_home = "dmc50_tests_" + std::to_string(getuid());
};

} // namespace

TEST_F(RunFolders, AreWhereTestsPutTheirFilesAndGoWithTheRun) {
    fs::path own;
    {
        const RunFolder folder;
        own = fs::temp_directory_path();
        EXPECT_EQ(own.parent_path(), home());
        EXPECT_TRUE(fs::is_directory(own));
        fs::create_directory(own / "left over");
    }
    EXPECT_FALSE(fs::exists(own));
}

TEST_F(RunFolders, OfKilledRunsAreRemovedByTheNext) {
    const fs::path killed = otherRun("run_killed");
    const RunFolder folder;
    EXPECT_FALSE(fs::exists(killed));
}

TEST_F(RunFolders, OfRunningOnesStay) {
    const fs::path running = otherRun("run_running");
    const int lock = open(running.c_str(), O_RDONLY | O_DIRECTORY);
    ASSERT_EQ(flock(lock, LOCK_EX), 0);
    {
        const RunFolder folder;
        EXPECT_TRUE(fs::exists(running / "test"));
        const fs::path own = fs::temp_directory_path();
        unsetenv("DMC50_TEST_RUN");
        setenv("TMPDIR", m_directory.path().toLocal8Bit().constData(), 1);
        const RunFolder another;
        EXPECT_TRUE(fs::exists(own)) << "removed while its run lasts";
    }
    close(lock);
}

TEST_F(RunFolders, AreSharedWithAChild) {
    const RunFolder folder;
    const fs::path own = fs::temp_directory_path();
    {
        const RunFolder of_a_child;
        EXPECT_EQ(fs::temp_directory_path(), own);
    }
    EXPECT_TRUE(fs::exists(own));
}
