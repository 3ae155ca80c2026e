#include "runtime/panel/ksetting.h"
#include "runtime/panel/panelpaths.h"
#include "tests/support/messagelog.h"
#include "tests/support/scopedpanelpaths.h"
#include "tests/support/temporarydirectory.h"
#include "tests/unit/panel/recordingfram.h"

#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/** Counts up through the fields, one change after the other, until killed. After
 *  change i the newest field is i modulo 100, and the fields before it hold the
 *  numbers before. Tells each change through @p progress. */
[[noreturn]] void changeForEver(int progress) {
    RecordingFram fram;
    KSetting setting(fram);
    for (int i = 1;; ++i) {
        if (!setting.setSettingValue(i % 100, i) || write(progress, "+", 1) != 1)
            _exit(1);
    }
}

/** Lets a child make @p changes changes and some more, then kills it at once. */
void killAfter(int changes) {
    int progress[2];
    ASSERT_EQ(pipe(progress), 0);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0)
        changeForEver(progress[1]);
    close(progress[1]);
    for (char mark; changes > 0; --changes)
        ASSERT_EQ(read(progress[0], &mark, 1), 1) << "the child ended by itself";
    kill(child, SIGKILL);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(WTERMSIG(status), SIGKILL);
    close(progress[0]);
}

/** Whether the loaded values are those right after some change. */
void expectOneChangesState(KSetting& setting) {
    int newest = 0;
    for (int field = 0; field < 100; ++field)
        newest = qMax(newest, setting.getSettingValue(field));
    for (int i = qMax(1, newest - 99); i <= newest; ++i)
        EXPECT_EQ(setting.getSettingValue(i % 100), i) << "newest is " << newest;
}

} // namespace

TEST(SettingsAfterAKill, AreReadWholeOrIgnored) {
    MessageLog log;
    for (int changes = 0; changes < 120; ++changes) {
        TemporaryDirectory directory;
        ScopedPanelPaths paths(directory.path());
        killAfter(changes);
        const QFileInfo file(panelPaths().saved_settings);
        EXPECT_TRUE(!file.exists() || file.size() == 0 || file.size() == 200) << file.size();
        EXPECT_TRUE(changes == 0 || file.size() == 200) << "a finished change is in the file";
        RecordingFram fram;
        KSetting setting(fram);
        expectOneChangesState(setting);
    }
}
