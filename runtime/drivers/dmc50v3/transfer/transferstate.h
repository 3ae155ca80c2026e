#ifndef RUNTIME_DRIVERS_DMC50V3_TRANSFER_TRANSFERSTATE_H
#define RUNTIME_DRIVERS_DMC50V3_TRANSFER_TRANSFERSTATE_H

#include "runtime/drivers/dmc50v3/transfer/transferdirection.h"

#include <QByteArray>
#include <QString>

#include <atomic>

/** What the panel chooses for a transfer and what it is shown of one, with the tags
 *  through which it does. "Writing" is from a file to the controller.
 *
 *  Any thread: each member is an atomic, and a tag may show it one step late. */
struct TransferState {
    TransferState();

    /** The tags but for the starts of transfers. The first test that @p address
     *  passes decides; one that fails its condition goes on to the next. @{ */
    void writeTag(const QString& address, const QByteArray& data);
    /** @p data comes zero-filled in the tag's size. */
    void readTag(const QString& address, QByteArray& data) const;
    /** @} */

    /** Ignored unless 0 <= count <= 32. */
    void setProgCount(int count);

    /** Sets the error flag of @p direction, if it has one. */
    void setError(TransferDirection direction);

    std::atomic<bool> writing_enable; // a write transfer runs
    std::atomic<bool> reading_enable; // a read transfer runs, or its end is still shown
    std::atomic<bool> writing_error;
    std::atomic<bool> reading_error;
    std::atomic<int> writing_progress; // 0..100
    std::atomic<int> reading_progress; // 0..100
    std::atomic<int> prog_id;          // -1 asks for a template
    std::atomic<int> prog_count;       // 0..32
};

#endif
