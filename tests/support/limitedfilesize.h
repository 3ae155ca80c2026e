#ifndef TESTS_SUPPORT_LIMITEDFILESIZE_H
#define TESTS_SUPPORT_LIMITEDFILESIZE_H

#include <csignal>

#include <sys/resource.h>

/** While it lives, no file of this process grows beyond a size: what is beyond
 *  fails to be written, as on a full stick. */
class LimitedFileSize {
public:
    explicit LimitedFileSize(rlim_t bytes) {
        m_handler = std::signal(SIGXFSZ, SIG_IGN); // the write fails instead
        getrlimit(RLIMIT_FSIZE, &m_previous);
        const rlimit limit = {bytes, m_previous.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~LimitedFileSize() {
        setrlimit(RLIMIT_FSIZE, &m_previous);
        std::signal(SIGXFSZ, m_handler);
    }
    LimitedFileSize(const LimitedFileSize&) = delete;
    LimitedFileSize& operator=(const LimitedFileSize&) = delete;

private:
    void (*m_handler)(int);
    rlimit m_previous = {};
};

#endif
