#include "tests/campaign/controller.h"

#include <algorithm>

namespace campaign {

namespace {

Course newCourse(Dice& dice) {
    return {quint32(dice.next()), dice.between(20, 3000)};
}

} // namespace

Controller::Controller(quint8 id, const std::vector<quint32>& addresses, const Dice& dice,
                       qint64 now)
    : m_id(id), m_dice(dice), m_addresses(addresses) {
    for (std::size_t i = 0; i < m_addresses.size(); ++i)
        m_first.push_back(newCourse(m_dice));
    restart(now);
}

void Controller::restart(qint64 usecs) {
    usecs = std::max(usecs, m_answered);
    m_station = std::make_unique<simulator::Station>(m_id);
    for (std::size_t i = 0; i < m_addresses.size(); ++i)
        set(m_addresses[i], m_first[i], usecs);
}

void Controller::set(quint32 address, const Course& course, qint64 usecs) {
    m_station->setMoving(address, course.moving());
    m_histories[address].change(usecs, course);
}

void Controller::stir(qint64 usecs) {
    const quint32 address = m_dice.pick(m_addresses);
    const Course course = newCourse(m_dice);
    if (m_answered <= usecs) // not before a request that is still on its way
        set(address, course, usecs);
}

simulator::Reply Controller::answer(const simulator::Request& request, qint64 usecs,
                                    const WriteSink& sink) {
    m_answered = std::max(m_answered, usecs);
    for (std::size_t i = 0; i < request.values.size(); ++i) {
        const auto history = m_histories.find(request.addresses[i]);
        if (history == m_histories.end())
            continue;
        history->second.change(usecs, {request.values[i], 0});
        sink(m_id, request.addresses[i], request.values[i]);
    }
    return m_station->answer(request, usecs / 1000);
}

bool Controller::held(quint32 address, quint32 value, qint64 from, qint64 to) const {
    const auto history = m_histories.find(address);
    return history == m_histories.end() || history->second.held(value, from, to);
}

} // namespace campaign
