#ifndef HOST_TRANSFER_RECIPETRANSFER_H
#define HOST_TRANSFER_RECIPETRANSFER_H

#include "host/session/linksession.h"

#include <functional>

namespace host {

enum class TransferKind {
    Pull,     // controller to file
    Template, // a blank file
    Push      // file to controller
};

/** How a transfer ended. */
struct TransferEnd {
    bool completed = false; // 100 % was seen
    bool failed = false;    // the driver has set its error flag
    QString error;          // what kept the transfer from its end; "interrupted" after a cancel
};

/** Program transfers through the driver's "VVT_" tags, as the panel's pages make
 *  them. Thread: the link's. */
class RecipeTransfer {
public:
    using Progress = std::function<void(int percent)>;

    /** @p link must be at rest on @p station, and stay so during a transfer: the
     *  driver takes the station from the port again and again. */
    RecipeTransfer(LinkSession& link, int station, Clock& clock = Clock::system());

    /** Returns when the outcome is known. @p program_id does not matter to a
     *  template. */
    TransferEnd run(TransferKind kind, int program_id, int count, const Progress& progress);

    /** Waits until the driver shows no transfer any more, which takes some seconds. */
    void settle();

private:
    struct Flags {
        bool running = false;
        bool failed = false;
        int percent = 0;
        bool given_up = false; // by this object
        QString error;         // of asking

        bool hasBegun() const { return running || failed || percent > 0; }
        bool isOver() const { return !running || failed || percent == 100 || given_up; }
    };

    void settle(TransferKind kind);
    Result<void> start(TransferKind kind, int program_id, int count);
    bool await(TransferKind kind, int msecs, const std::function<bool(const Flags&)>& condition,
               Flags& flags);
    TransferEnd follow(TransferKind kind, const Progress& progress);
    Flags flags(TransferKind kind);
    Result<int> value(const char* tag, TransferKind kind);
    Result<void> setValue(const char* tag, int number);
    TagDefinition tag(const QString& address) const;
    void pass(int msecs);
    bool isSilent() const;

    LinkSession& m_link;
    const int m_station;
    Clock& m_clock;
    qint64 m_start = 0;            // of the transfer; the clock's time, ms
    quint64 m_silent_before = 0;   // requests without an answer until then
    quint64 m_withheld_before = 0; // of the station
};

} // namespace host

#endif
