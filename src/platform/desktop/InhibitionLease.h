// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QVariant>

#include <optional>
#include <variant>
#include <vector>

namespace orvane {

/// Decides which service to ask to keep the screen on, and when to release what it has granted, so
/// that at most one inhibition is held whatever happens while a reply is pending. Input are the
/// wishes and events, output the commands to perform, in order. A plain value without I/O; its
/// owner performs the commands.
class InhibitionLease {
public:
    /// The ways to inhibit, the preferred one first.
    enum class Way { screenSaver, portal, xServer };

    struct Ask {
        Way way;
        /// Identifies the reply.
        int number;
    };
    struct Release {
        Way way;
        /// The token that the service returned.
        QVariant token;
    };
    using Command = std::variant<Ask, Release>;
    using Commands = std::vector<Command>;

    [[nodiscard]] Commands want();
    [[nodiscard]] Commands unwant();

    [[nodiscard]] Commands granted(const Ask& ask, const QVariant& token);
    [[nodiscard]] Commands refused(const Ask& ask);

    /// The service has appeared; when it is replaced, `serviceWent` comes first.
    [[nodiscard]] Commands serviceCame(Way way);
    /// The service has gone, and with it what it had granted; pending replies will not come.
    [[nodiscard]] Commands serviceWent(Way way);

private:
    [[nodiscard]] Commands giveBack();
    [[nodiscard]] Commands ask(Way way);
    [[nodiscard]] Commands askFirst();

    bool m_isWanted = false;
    int m_count = 0;
    std::optional<Ask> m_asked;
    /// A preferred service has appeared while a reply was pending.
    bool m_isBetterAvailable = false;
    std::optional<Release> m_held;
};

} // namespace orvane
