// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <any>
#include <functional>
#include <memory>
#include <string_view>
#include <vector>

namespace orvane {

/// Lets parts of the program announce changes to parts they do not know. Delivery is synchronous,
/// in the order of registration, on the main thread, where everything here is called. Observers may
/// come and go while a notification is delivered: one that has gone is not called any more, one
/// that has come is called from the next notification on. Owned by the composition root; the tokens
/// of its observers may outlive it. Never fails.
class NotificationCenter {
    struct Entry;

public:
    /// The text must outlive every use of the name; in practice it is a literal.
    struct Name {
        std::string_view text;

        friend bool operator==(Name, Name) = default;
    };
    struct Notification {
        Name name;
        /// Empty when the notification carries nothing.
        const std::any& object;
    };
    using Handler = std::function<void(const Notification&)>;

    /// Keeps an observer registered for as long as it lives.
    class [[nodiscard]] Token {
    public:
        Token() = default;
        ~Token();
        Token(Token&&) noexcept = default;
        Token& operator=(Token&& other) noexcept;

    private:
        friend NotificationCenter;
        explicit Token(std::shared_ptr<Entry> entry);

        std::shared_ptr<Entry> m_entry;
    };

    NotificationCenter();
    ~NotificationCenter();
    NotificationCenter(const NotificationCenter&) = delete;
    NotificationCenter& operator=(const NotificationCenter&) = delete;

    Token addObserver(Name name, Handler handler);
    void post(Name name, const std::any& object = {});

private:
    std::vector<std::shared_ptr<Entry>> m_entries;
};

} // namespace orvane
