#ifndef TESTS_UNIT_DMC50V3_TRANSFER_TRANSFERFIXTURE_H
#define TESTS_UNIT_DMC50V3_TRANSFER_TRANSFERFIXTURE_H

#include "runtime/drivers/dmc50v3/transfer/csvimexporter.h"
#include "tests/support/memorycontroller.h"
#include "tests/support/scriptedport.h"
#include "tests/support/simulatedclock.h"
#include "tests/support/temporarydirectory.h"
#include "tests/support/testproject.h"
#include "tests/unit/dmc50v3/driverprobe.h"
#include "tests/unit/dmc50v3/transfer/noticelog.h"
#include "tests/unit/dmc50v3/transfer/simulatedtransferenvironment.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <memory>

/** An exporter on a real driver with its polling thread, a controller in memory
 *  and a stick in a temporary directory; all of it in virtual time.
 *
 *  The test's own thread is the GUI thread and the host's communication thread.
 *  Time stands still unless polling thread and transfer both sleep. */
class TransferFixture : public ::testing::Test {
protected:
    TransferFixture();

    /** Ends both threads while the test's own class still answers them. */
    void TearDown() override;

    /** Slots without a tag in the project; before the first transfer. */
    void leaveOut(int program);

    /** The panel's side. @{ */
    void writeTag(const char* address, int value);
    int readTag(const char* address);
    /** Writes id and count, as the panel does before a transfer. */
    void choose(int program_id, int count);
    /** Starts a transfer and returns when it has ended. */
    void read(int program_id, int count);
    void write(int program_id, int count);
    void expectIdle();
    /** @} */

    /** Saves rows whose values are all the row's number as a program file. */
    void saveTable(int program_id, int rows);

    /** Returns when the worker thread has done all that it was asked to do until
     *  now. Runs the GUI thread's events meanwhile. */
    void waitForWorker();

    /** The controller's programs. @{ */
    static quint32 slotAddress(int program);
    void setProgram(int program, const QByteArray& image);
    QByteArray program(int program) const;
    static QByteArray imageOf(quint32 value);
    /** @} */

    /** What the controller gives to a request that it does not answer: nothing,
     *  once the response timeout has passed. Time jumps, because a reader that
     *  gives up may come to wait for the polling thread on a lock. */
    QByteArray silence();

    /** Called with the program's number, in the polling thread, when its read is
     *  on the line. False: the controller stays silent. */
    std::function<bool(int program)> m_on_program_read;

    QString file(int program_id) const;

    SimulatedClock m_clock;
    TemporaryDirectory m_stick;
    SimulatedTransferEnvironment m_environment;
    MemoryController m_controller;
    ScriptedPort m_port;
    NoticeLog m_notices;
    TestProject m_project;
    std::unique_ptr<DriverDMC50v3> m_driver;
    std::unique_ptr<CSVImExporter> m_exporter;

    /** Makes the driver know the exporter, as if it had made it. */
    void attachToDriver() { DriverProbe(*m_driver).setExporter(m_exporter.get()); }
    bool isProgramReading() const { return DriverProbe(*m_driver).isProgramReading(); }

private:
    void start();
    QByteArray answer(const QByteArray& request);

    QStringList m_slot_tags; // those of the project
    bool m_started;
    std::atomic<bool> m_transferring; // the worker has something to do
};

#endif
