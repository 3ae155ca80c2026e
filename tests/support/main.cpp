// Every test program runs inside a Qt application, as the panel's runtime does:
// signals across threads, SQL drivers and widgets need one.
#include "runtime/base/qtcompat.h"
#include "tests/support/runfolder.h"

#include <QApplication>

#include <gtest/gtest.h>

#include <cstdlib>

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    ::testing::FLAGS_gtest_death_test_style = "threadsafe";
    if (::testing::FLAGS_gtest_list_tests)
        return RUN_ALL_TESTS();
    const RunFolder folder;
#if PANEL_QT4
    // Qt 4 on X11 has no offscreen platform: without a display, no widgets.
    QApplication application(argc, argv, std::getenv("DISPLAY") != nullptr);
#else
    if (!std::getenv("DISPLAY"))
        setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QApplication application(argc, argv);
#endif
    return RUN_ALL_TESTS();
}
