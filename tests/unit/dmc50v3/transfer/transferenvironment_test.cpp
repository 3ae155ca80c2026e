// What transfers take from the panel itself.
#include "runtime/drivers/dmc50v3/transfer/transferenvironment.h"

#include "runtime/base/clock.h"

#include <QEventLoop>

#include <gtest/gtest.h>

#include <atomic>
#include <unistd.h>

namespace {

std::atomic<int> syncs(0);

} // namespace

/** In place of the C library's, for this whole program. */
void sync() noexcept {
    ++syncs;
}

TEST(TransferEnvironment, OfThePanelIsOne) {
    EXPECT_EQ(&TransferEnvironment::panel(), &TransferEnvironment::panel());
    EXPECT_EQ(&TransferEnvironment::panel().clock(), &Clock::system());
}

TEST(TransferEnvironment, OfThePanelSyncsTheStorage) {
    const int before = syncs;
    TransferEnvironment::panel().syncStorage();
    EXPECT_EQ(syncs, before + 1);
}

TEST(TransferEnvironment, OfThePanelCallsNoEarlierThanAsked) {
    const int msecs = 20;
    QEventLoop loop;
    const qint64 start = Clock::system().msecsSinceBoot();
    TransferEnvironment::panel().callLater(msecs, &loop, SLOT(quit()));
    loop.exec();
    EXPECT_GE(Clock::system().msecsSinceBoot() - start, msecs - 1); // the timer's own rounding
}
