#include "tests/support/runfolder.h"

#include <cstdlib>
#include <string>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

const char* const InsideVariable = "DMC50_TEST_RUN"; // set for whom a program starts

/** The folder, locked and not passed on to other programs; -1 when somebody else
 *  has it locked (only asked with LOCK_NB) or it is gone. */
int lockedFolder(const fs::path& folder, int how) {
    const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0 || flock(descriptor, how) == 0)
        return descriptor;
    close(descriptor);
    return -1;
}

void removeWhatOthersLeft(const fs::path& home) {
    std::error_code ignored; // somebody else may be removing it, too
    for (const fs::directory_entry& entry : fs::directory_iterator(home, ignored)) {
        const int abandoned = lockedFolder(entry.path(), LOCK_EX | LOCK_NB);
        if (abandoned < 0)
            continue;
        fs::remove_all(entry.path(), ignored);
        close(abandoned);
    }
}

} // namespace

RunFolder::RunFolder() {
    if (getenv(InsideVariable))
        return;
    // No "-" before a random part: a blank program file's path may hold no "-1".
    const fs::path home = fs::temp_directory_path() / ("dmc50_tests_" + std::to_string(getuid()));
    mkdir(home.c_str(), S_IRWXU);
    const int one_at_a_time = lockedFolder(home, LOCK_EX); // a new folder is not yet locked
    removeWhatOthersLeft(home);
    std::string name = (home / "run_XXXXXX").string();
    if (mkdtemp(&name[0])) {
        m_path = name;
        m_lock = lockedFolder(m_path, LOCK_EX);
        setenv("TMPDIR", name.c_str(), 1);
        setenv(InsideVariable, "yes", 1);
    }
    if (one_at_a_time >= 0)
        close(one_at_a_time);
}

RunFolder::~RunFolder() {
    if (m_path.empty())
        return;
    std::error_code ignored; // the next run tries again
    fs::remove_all(m_path, ignored);
    close(m_lock);
}
