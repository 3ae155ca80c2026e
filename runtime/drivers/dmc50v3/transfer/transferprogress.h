#ifndef RUNTIME_DRIVERS_DMC50V3_TRANSFER_TRANSFERPROGRESS_H
#define RUNTIME_DRIVERS_DMC50V3_TRANSFER_TRANSFERPROGRESS_H

#include <QtGlobal>

/** How far a transfer has come. Computed in single precision, as the panel shows
 *  it. Any thread. */
namespace TransferProgress {

/** @p part of @p whole as 0..100. */
int percent(int part, int whole);

/** Share of a write queue of @p initial pairs that has gone when @p left remain.
 *  The difference is unsigned: a queue that has grown gives a huge ratio. */
float drainRatio(quint32 initial, quint32 left);

/** Integer part of @p ratio x 100; what an int cannot hold becomes the largest
 *  int, as the panel's processor converts it. */
int ratioPercent(float ratio);

} // namespace TransferProgress

/** Notices a write queue that has stopped shrinking. */
class DrainWatch {
public:
    DrainWatch() : m_has_previous(false), m_previous(0), m_unchanged(0) {}

    /** Takes the next poll's ratio. True when it is the same for the 6th time
     *  since it last changed. */
    bool isStalled(float ratio);

private:
    bool m_has_previous;
    float m_previous;
    int m_unchanged; // polls in a row with the ratio of the one before
};

#endif
