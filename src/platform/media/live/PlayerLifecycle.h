// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <optional>
#include <variant>

namespace orvane {

/// The phases of a player and the transitions between them: unopened, then opening, then playing,
/// and from each of these failed, for good. Owned by a player, which reports what happens and acts
/// on each new phase. A plain value that knows nothing of mpv.
class PlayerLifecycle {
public:
    enum class Phase { unopened, opening, playing, failed };

    [[nodiscard]] Phase phase() const { return static_cast<Phase>(m_phase.index()); }
    /// Returns why the player failed; nullopt in every other phase, or if the reason is unknown.
    [[nodiscard]] std::optional<QString> error() const;
    /// Returns whether the user wants it to play.
    [[nodiscard]] bool isWanted() const { return m_isWanted; }
    [[nodiscard]] bool shouldAdvance() const;

    // Events. Each function returns whether the event led to a new phase.

    /// The first call leads to opening the stream, once the expected renderer is settled.
    [[nodiscard]] bool play();
    void pause() { m_isWanted = false; }
    void rendererExpected();
    /// The renderer was created, or could not be.
    [[nodiscard]] bool rendererSettled();
    /// mpv has decoded the start of the stream. The player is playing once a frame is shown too, or
    /// at once if there is no video.
    [[nodiscard]] bool playbackStarted();
    [[nodiscard]] bool frameShown();
    /// mpv has chosen the tracks to be played.
    [[nodiscard]] bool tracksSelected(bool hasVideo);
    [[nodiscard]] bool fail(std::optional<QString> error);

private:
    // No member initialisers, which nested classes in a std::variant member cannot have here:
    // always create these with {}.
    struct Unopened {
        bool awaitsRenderer;
    };
    struct Opening {
        bool hasStarted;
        bool hasShownFrame;
        bool lacksVideo;
    };
    struct Playing {};
    struct Failed {
        std::optional<QString> error;
    };

    /// Enters the next phase if it is due.
    [[nodiscard]] bool advance();

    // In the order of `Phase`.
    std::variant<Unopened, Opening, Playing, Failed> m_phase;
    bool m_isWanted = false;
};

} // namespace orvane
