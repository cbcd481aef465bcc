// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/media/live/PlayerLifecycle.h"

#include <utility>

namespace orvane {

std::optional<QString> PlayerLifecycle::error() const {
    const auto* failed = std::get_if<Failed>(&m_phase);
    return failed != nullptr ? failed->error : std::nullopt;
}

bool PlayerLifecycle::shouldAdvance() const {
    return m_isWanted && std::holds_alternative<Playing>(m_phase);
}

bool PlayerLifecycle::advance() {
    if (const auto* unopened = std::get_if<Unopened>(&m_phase)) {
        if (!m_isWanted || unopened->awaitsRenderer)
            return false;
        m_phase = Opening{};
        return true;
    }
    if (const auto* opening = std::get_if<Opening>(&m_phase)) {
        if (!opening->hasStarted || (!opening->lacksVideo && !opening->hasShownFrame))
            return false;
        m_phase = Playing{};
        return true;
    }
    return false;
}

bool PlayerLifecycle::play() {
    m_isWanted = true;
    return advance();
}

void PlayerLifecycle::rendererExpected() {
    if (auto* unopened = std::get_if<Unopened>(&m_phase))
        unopened->awaitsRenderer = true;
}

bool PlayerLifecycle::rendererSettled() {
    if (auto* unopened = std::get_if<Unopened>(&m_phase))
        unopened->awaitsRenderer = false;
    return advance();
}

bool PlayerLifecycle::playbackStarted() {
    if (auto* opening = std::get_if<Opening>(&m_phase))
        opening->hasStarted = true;
    return advance();
}

bool PlayerLifecycle::frameShown() {
    if (auto* opening = std::get_if<Opening>(&m_phase))
        opening->hasShownFrame = true;
    return advance();
}

bool PlayerLifecycle::tracksSelected(bool hasVideo) {
    if (auto* opening = std::get_if<Opening>(&m_phase))
        opening->lacksVideo = !hasVideo;
    return advance();
}

bool PlayerLifecycle::fail(std::optional<QString> error) {
    if (std::holds_alternative<Failed>(m_phase))
        return false;
    m_phase = Failed{.error = std::move(error)};
    return true;
}

} // namespace orvane
