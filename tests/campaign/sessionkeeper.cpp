#include "tests/campaign/sessionkeeper.h"

namespace campaign {

namespace {

/** The part of a block that the session's command names. */
Block someOf(const Block& block, Dice& dice) {
    const int skipped = dice.chance(0.5) ? dice.between(0, block.count - 1) : 0;
    return {block.station, block.first + quint32(skipped), dice.between(1, block.count - skipped)};
}

} // namespace

void SessionKeeper::setSome(Dice& dice) {
    std::vector<Block> blocks;
    const int count = dice.chance(0.7) ? dice.between(1, 5) : dice.between(1, 40);
    for (int i = 0; i < count; ++i)
        blocks.push_back(someOf(dice.pick(m_scenario.blocks), dice));
    set(blocks);
}

void SessionKeeper::setAll() {
    set(m_scenario.blocks);
}

void SessionKeeper::set(const std::vector<Block>& blocks) {
    watch(); // the one before may have been taken over
    QList<CommunicatorCommand> commands;
    for (const Block& block : blocks)
        commands += CommunicatorCommand(
            QString::fromLatin1("%1-NA%2").arg(block.station).arg(block.first, 0, 16),
            CommunicatorCommand::DoubleWord, block.count);
    m_rig.driver().setSessionCommand(commands);
    m_awaited = blocks;
    m_awaiting = true;
}

void SessionKeeper::watch() {
    if (!m_awaiting || (m_rig.thread().getFlag() & PollingThread::NewSession))
        return;
    m_awaiting = false;
    for (Tag& tag : m_tags.tags())
        tag.cached_since = -1;
    for (const Block& block : m_awaited) {
        for (int i = 0; i < block.count; ++i)
            m_tags.find(block.station, block.first + quint32(i))->cached_since = m_time.now();
    }
}

} // namespace campaign
