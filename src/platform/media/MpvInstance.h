// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/DeferredCall.h"
#include "platform/media/view/VideoOutput.h"
#include "platform/media/view/VideoSource.h"

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

struct mpv_event;
struct mpv_handle;
struct mpv_render_context;
struct mpv_render_param;

namespace orvane {

/// Makes numbers use the C locale (`LC_NUMERIC`), without which mpv creates no handle: a decimal
/// comma would break its options. Called by `main` after the application object is created, which
/// sets the user's locale, and before other threads start. Main thread.
void useNumericCLocale();

/// Returns the version of the client API of the installed libmpv, such as "2.0". Any thread.
[[nodiscard]] QString mpvApiVersion();

/// One mpv handle and the render context that belongs to it. Main thread; mpv's own threads only
/// wake it. Destroying a handle can take a few hundred milliseconds, so an instance is not deleted
/// directly but given to a `MpvTeardownQueue`.
class MpvInstance final {
public:
    enum class Sound { on, off };
    /// Returns null if mpv cannot be set up. Any thread; takes some milliseconds. Needs
    /// `useNumericCLocale`. Without sound the stream's sound is played to nowhere.
    [[nodiscard]] static mpv_handle* makeHandle(VideoOutput output, Sound sound);
    /// Turns the sound of a handle on that was made without.
    void turnSoundOn() const;
    /// Takes ownership of the handle.
    explicit MpvInstance(mpv_handle* handle);
    ~MpvInstance();
    MpvInstance(const MpvInstance&) = delete;
    MpvInstance& operator=(const MpvInstance&) = delete;

    [[nodiscard]] mpv_handle* handle() const { return m_handle; }

    /// Returns false if mpv refuses the parameters.
    [[nodiscard]] bool createRenderContext(mpv_render_param* parameters,
                                           VideoSource::ContextScope contextScope);

    [[nodiscard]] bool hasRenderContext() const { return m_renderContext != nullptr; }
    /// Returns whether the last update has brought a new frame. Call it once for each update.
    [[nodiscard]] bool hasNewFrame() const;
    enum class Drawn { nothing, black, frame };
    /// Draws the current frame, or black before the first.
    [[nodiscard]] Drawn draw(mpv_render_param* parameters) const;

    enum class Decoding { allFrames, keyFrames };
    /// How many of the frames are decoded from now on; it is as the handle was made before the
    /// first call. The decoder is made anew, and the stream goes on from `place`, in
    /// seconds, if that is given.
    void setDecoding(Decoding decoding, std::optional<double> place) const;
    enum class Scaling { down, up };
    /// What the software renderer does from the next frame on.
    void setScaling(Scaling scaling) const;
    /// Goes on from this place, in seconds.
    void seek(double place) const;

    /// Sends a command and ignores its outcome.
    void command(const std::vector<const char*>& words) const;
    /// Requests a property. The answer is an event `MPV_EVENT_GET_PROPERTY_REPLY` with this id;
    /// answers arrive in the order of the requests.
    void requestNumber(const char* property, std::uint64_t replyId) const;
    /// Returns the number that such an event answers with; nullopt if there is none.
    [[nodiscard]] static std::optional<double> numberIn(const mpv_event& reply);
    /// Requests a property that is a map or a list.
    void requestNode(const char* property, std::uint64_t replyId) const;
    void setFlag(const char* property, bool on) const;
    void setNumber(const char* property, double value) const;
    /// Sets a property that is a list.
    void setList(const char* property, QByteArray onlyEntry) const;

    /// Called on the main thread for each event.
    void onEvent(std::function<void(const mpv_event&)> handler);
    /// Called on the main thread when there is something new to draw.
    void onRenderUpdate(std::function<void()> handler);
    /// Has that called soon, without a new frame.
    void requestRenderUpdate() { m_renderUpdateArrived.schedule(); }

private:
    friend class MpvTeardownQueue;

    /// What remains to be freed, on any thread.
    struct Parts {
        mpv_render_context* renderContext;
        mpv_handle* handle;
    };

    void drainEvents();
    /// Drops the pending frame so that mpv does not wait for it.
    void dropPendingFrame();
    /// Blocks until mpv has ended its threads.
    static void free(const Parts& parts);
    /// Frees what must be freed on the main thread and returns the rest, which the caller then
    /// owns. No other member may be called afterwards.
    [[nodiscard]] Parts release();

    mpv_handle* m_handle;
    mpv_render_context* m_renderContext = nullptr;
    VideoSource::ContextScope m_contextScope;
    std::function<void(const mpv_event&)> m_eventHandler;
    std::function<void()> m_renderUpdateHandler;
    DeferredCall m_eventsArrived;
    DeferredCall m_renderUpdateArrived;
};

} // namespace orvane
