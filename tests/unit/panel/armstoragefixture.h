#ifndef TESTS_UNIT_PANEL_ARMSTORAGEFIXTURE_H
#define TESTS_UNIT_PANEL_ARMSTORAGEFIXTURE_H

#include "runtime/panel/armlinuxhmi.h"
#include "tests/support/fakemount.h"
#include "tests/support/messagelog.h"
#include "tests/support/scopedpanelpaths.h"
#include "tests/support/storagesignals.h"
#include "tests/unit/panel/recordingstorage.h"

#include <gtest/gtest.h>

/** The panel's storage on paths of its own, with mounts that the test makes up. */
class ArmStorageFixture : public ::testing::Test {
protected:
    TemporaryDirectory directory;
    ScopedPanelPaths paths{directory.path()};
    FakeMount mount;
    MessageLog log;
    RecordingStorage system;
    ArmLinuxHmi hmi{system};
    StorageSignals told{hmi};
};

#endif
