#ifndef TESTS_SUPPORT_RUNFOLDER_H
#define TESTS_SUPPORT_RUNFOLDER_H

#include <filesystem>

/** The temporary directory of a test program and of all that it starts: a folder of
 *  its own, which goes with it. What a program leaves that is killed, the next one
 *  removes. Made before the first test, on the main thread; a death test's child
 *  works in its parent's folder. */
class RunFolder {
public:
    RunFolder();
    ~RunFolder();
    RunFolder(const RunFolder&) = delete;
    RunFolder& operator=(const RunFolder&) = delete;

private:
    std::filesystem::path m_path; // empty in a child
    int m_lock = -1;              // of the folder, held while its program lives
};

#endif
