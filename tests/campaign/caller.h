#ifndef TESTS_CAMPAIGN_CALLER_H
#define TESTS_CAMPAIGN_CALLER_H

#include "tests/campaign/sessionkeeper.h"

namespace campaign {

/** What all callers of one driver share. */
struct CallersWorld {
    const Scenario& scenario;
    VirtualTime& time;
    DriverRig& rig;
    TagBook& tags;
    WriteBook& writes;
    SessionKeeper& sessions;
    const ExchangeCheck& exchanges;
    Figures& figures;
    Verdict& verdict;
    quint32 written = 0;  // values so far
    bool resting = false; // callers begin nothing new
};

/** One thread that calls the driver, as a fiber: the host's, or that of a transfer,
 *  which reads and writes only. Each reads blocks of its own, since a value that is
 *  fetched once belongs to one reader. */
class Caller {
public:
    enum class Role { Host, Transfer };
    Caller(Role role, CallersWorld& world);

    /** Calls the driver until the world rests. */
    void run();

    /** True while it is in a call. */
    bool isCalling() const { return m_calling; }

    /** Reads @p count double words from @p start on and judges them. Returns false
     *  when the driver gave nothing. */
    bool read(quint8 station, quint32 start, int count);

private:
    struct Asked;

    void act();
    void readSome();
    void writeSome();
    void checkStatus();
    QByteArray ask(quint8 station, quint32 start, int count);
    void write(quint8 station, quint32 start, const QByteArray& data);
    void judge(const std::vector<Asked>& asked, const QByteArray& data, qint64 began);
    bool isOld(const Asked& asked, quint32 value, qint64 began);
    void judgeWait(qint64 began, qint64 locked_out);
    void judgeFailure(const std::vector<Asked>& asked, qint64 began, bool line_failed);
    qint64 longestFetchMsecs() const;
    QByteArray newValues(int count);

    const Role m_role;
    CallersWorld& m_world;
    Dice m_dice;
    std::vector<Block> m_blocks; // its own
    bool m_calling = false;
};

} // namespace campaign

#endif
