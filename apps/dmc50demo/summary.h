#ifndef APPS_DMC50DEMO_SUMMARY_H
#define APPS_DMC50DEMO_SUMMARY_H

#include "host/line/linestatistics.h"

#include <QStringList>

/** The demo in numbers. */
struct Summary {
    host::LineStatistics total;   // of the whole demo
    host::LineStatistics calm;    // of the seconds without a fault
    qint64 calm_msecs = 0;        // how many those were
    quint64 struck_by_faults = 0; // requests that the simulator left unanswered
    int stations = 0;             // each polled with one frame a cycle

    QStringList lines() const;
};

#endif
