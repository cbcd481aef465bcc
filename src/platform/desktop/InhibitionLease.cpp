// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/InhibitionLease.h"

#include <utility>

namespace orvane {

InhibitionLease::Commands InhibitionLease::want() {
    m_isWanted = true;
    return m_asked || m_held ? Commands{} : askFirst();
}

InhibitionLease::Commands InhibitionLease::unwant() {
    m_isWanted = false;
    return giveBack();
}

InhibitionLease::Commands InhibitionLease::granted(const Ask& ask, const QVariant& token) {
    const Release held{.way = ask.way, .token = token};
    if (!m_asked || m_asked->number != ask.number)
        return {held};
    m_asked.reset();
    if (!m_isWanted)
        return {held};
    if (!m_isBetterAvailable) {
        m_held = held;
        return {};
    }
    Commands commands{held};
    commands.push_back(askFirst().front());
    return commands;
}

InhibitionLease::Commands InhibitionLease::refused(const Ask& ask) {
    if (!m_asked || m_asked->number != ask.number)
        return {};
    m_asked.reset();
    if (!m_isWanted)
        return {};
    if (m_isBetterAvailable)
        return askFirst();
    if (ask.way == Way::xServer)
        return {};
    return this->ask(static_cast<Way>(std::to_underlying(ask.way) + 1));
}

InhibitionLease::Commands InhibitionLease::serviceCame(Way way) {
    if (m_asked) {
        m_isBetterAvailable |= way < m_asked->way;
        return {};
    }
    if (!m_isWanted || (m_held && m_held->way <= way))
        return {};
    Commands commands = giveBack();
    commands.push_back(askFirst().front());
    return commands;
}

InhibitionLease::Commands InhibitionLease::serviceWent(Way way) {
    const bool isConcerned = (m_asked && m_asked->way == way) || (m_held && m_held->way == way);
    if (!isConcerned)
        return {};
    m_asked.reset();
    m_held.reset();
    return m_isWanted ? askFirst() : Commands{};
}

InhibitionLease::Commands InhibitionLease::giveBack() {
    Commands commands;
    if (m_held)
        commands.emplace_back(*m_held);
    m_held.reset();
    return commands;
}

InhibitionLease::Commands InhibitionLease::ask(Way way) {
    m_asked = Ask{.way = way, .number = ++m_count};
    return {*m_asked};
}

InhibitionLease::Commands InhibitionLease::askFirst() {
    m_isBetterAvailable = false;
    return ask(Way::screenSaver);
}

} // namespace orvane
