// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QVariant>

#include <optional>
#include <variant>
#include <vector>

namespace orvane {

/// Decides whom to ask to keep the screen awake, and what to give back when: there is one
/// inhibition at most, whatever comes while an answer is awaited. It is told what is wanted and
/// what happens, and answers with what is to be done, in order. A plain value; whoever owns it does
/// the talking.
class InhibitionLease {
public:
    /// Who can do it, the best first.
    enum class Way { screenSaver, portal, xServer };

    struct Ask {
        Way way;
        /// Tells the answers apart.
        int number;
    };
    struct Release {
        Way way;
        /// What the one who was asked has given for it.
        QVariant token;
    };
    using Command = std::variant<Ask, Release>;
    using Commands = std::vector<Command>;

    [[nodiscard]] Commands want();
    [[nodiscard]] Commands unwant();

    [[nodiscard]] Commands granted(const Ask& ask, const QVariant& token);
    [[nodiscard]] Commands refused(const Ask& ask);

    /// Somebody offers this way now; if somebody did before, `serviceWent` was called.
    [[nodiscard]] Commands serviceCame(Way way);
    /// Nobody does any more, so what was held this way has gone, and an answer will not come.
    [[nodiscard]] Commands serviceWent(Way way);

private:
    [[nodiscard]] Commands giveBack();
    [[nodiscard]] Commands ask(Way way);
    [[nodiscard]] Commands askFirst();

    bool m_isWanted = false;
    int m_count = 0;
    std::optional<Ask> m_asked;
    /// Somebody better has come while an answer is awaited.
    bool m_isBetterThere = false;
    std::optional<Release> m_held;
};

} // namespace orvane
