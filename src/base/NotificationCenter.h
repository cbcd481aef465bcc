// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <string_view>
#include <type_traits>
#include <vector>

namespace orvane {

/// Names a notification and the type of its payload; void for none. The name must outlive every use
/// of the topic; in practice it is a literal.
template <class Payload = void>
struct Topic {
    std::string_view name;
};

/// Lets parts of the program announce changes to parts they do not know. Delivery is synchronous,
/// in the order of registration, on the main thread, on which all functions must be called.
/// Observers may be added and removed during a delivery: a removed one is no longer called, an
/// added one is called from the next notification on. Owned by the composition root; the tokens of
/// its observers may outlive it. Never fails.
class NotificationCenter {
    struct Entry;

public:
    /// Keeps an observer registered until it is destroyed.
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

    /// `handler` takes the payload, or no argument if it does not need it.
    template <class Payload, class Handler>
        requires std::is_invocable_v<Handler>
    Token addObserver(Topic<Payload> topic, Handler handler) {
        return add(topic.name, [handler = std::move(handler)](const void*) mutable { handler(); });
    }
    template <class Payload, class Handler>
        requires std::is_invocable_v<Handler, const Payload&>
    Token addObserver(Topic<Payload> topic, Handler handler) {
        return add(topic.name, [handler = std::move(handler)](const void* payload) mutable {
            handler(*static_cast<const Payload*>(payload));
        });
    }

    /// Adds one handler for several topics.
    template <class Handler, class... Payloads>
    [[nodiscard]] std::vector<Token> addObservers(Handler handler, Topic<Payloads>... topics) {
        std::vector<Token> tokens;
        (tokens.push_back(addObserver(topics, handler)), ...);
        return tokens;
    }

    void post(Topic<> topic) { deliver(topic.name, nullptr); }
    template <class Payload>
    void post(Topic<Payload> topic, const std::type_identity_t<Payload>& payload) {
        deliver(topic.name, &payload);
    }

private:
    /// Receives a pointer to the payload, null for none.
    using Handler = std::function<void(const void*)>;

    Token add(std::string_view name, Handler handler);
    void deliver(std::string_view name, const void* payload);

    std::vector<std::shared_ptr<Entry>> m_entries;
};

} // namespace orvane
