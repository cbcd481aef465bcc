// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/NotificationCenter.h"

namespace orvane {

/// An observer. Shared by its token and the deliveries in progress; the name is empty once the
/// token has been destroyed.
struct NotificationCenter::Entry {
    std::string_view name;
    Handler handler;
};

NotificationCenter::Token::Token(std::shared_ptr<Entry> entry) : m_entry(std::move(entry)) {}

NotificationCenter::Token::~Token() {
    if (m_entry)
        m_entry->name = {};
}

NotificationCenter::Token& NotificationCenter::Token::operator=(Token&& other) noexcept {
    std::swap(m_entry, other.m_entry);
    return *this;
}

NotificationCenter::NotificationCenter() = default;

NotificationCenter::~NotificationCenter() = default;

NotificationCenter::Token NotificationCenter::add(std::string_view name, Handler handler) {
    auto entry = std::make_shared<Entry>(name, std::move(handler));
    m_entries.push_back(entry);
    return Token(std::move(entry));
}

void NotificationCenter::deliver(std::string_view name, const void* payload) {
    std::erase_if(m_entries, [](const auto& entry) { return entry->name.empty(); });
    // A copy, because handlers may add observers and an entry must outlive its own call.
    const std::vector<std::shared_ptr<Entry>> entries = m_entries;
    for (const std::shared_ptr<Entry>& entry : entries) {
        if (entry->name == name)
            entry->handler(payload);
    }
}

} // namespace orvane
