#ifndef TESTS_CAMPAIGN_SESSIONKEEPER_H
#define TESTS_CAMPAIGN_SESSIONKEEPER_H

#include "tests/campaign/dice.h"
#include "tests/campaign/driverrig.h"

namespace campaign {

/** Sets the driver's sessions and knows which tags the present one keeps fresh. */
class SessionKeeper {
public:
    SessionKeeper(const Scenario& scenario, VirtualTime& time, DriverRig& rig, TagBook& tags)
        : m_scenario(scenario), m_time(time), m_rig(rig), m_tags(tags) {}

    /** A new session of some blocks, or of all. @{ */
    void setSome(Dice& dice);
    void setAll();
    /** @} */

    /** Has the driver taken the session over? To be asked before every exchange and
     *  every read. */
    void watch();

private:
    void set(const std::vector<Block>& blocks);

    const Scenario& m_scenario;
    VirtualTime& m_time;
    DriverRig& m_rig;
    TagBook& m_tags;
    std::vector<Block> m_awaited; // set, but not taken over
    bool m_awaiting = false;
};

} // namespace campaign

#endif
