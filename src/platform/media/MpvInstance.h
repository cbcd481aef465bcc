// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/media/VideoOutput.h"

#include <QCoroTask>
#include <QObject>
#include <QThreadPool>

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <stop_token>
#include <vector>

struct mpv_event;
struct mpv_handle;
struct mpv_render_context;
struct mpv_render_param;

namespace orvane {

/// One handle of the media library and the render context that belongs to it. Main thread; the
/// library's own threads only wake it. Taking one apart takes the library up to a few hundred
/// milliseconds, so it is never just deleted but given to a `MpvTeardownQueue`.
class MpvInstance final : public QObject {
    Q_OBJECT

public:
    /// Null when the library cannot be set up at all. Any thread; takes some milliseconds. The
    /// library refuses to work where a decimal point may be a comma (`LC_NUMERIC`).
    [[nodiscard]] static mpv_handle* makeHandle(VideoOutput output);
    /// Takes the handle over.
    explicit MpvInstance(mpv_handle* handle);
    ~MpvInstance() override;

    [[nodiscard]] mpv_handle* handle() const { return m_handle; }
    /// Null until one was created.
    [[nodiscard]] mpv_render_context* renderContext() const { return m_renderContext; }

    /// `withContextCurrent` runs what it is given where the renderer may be freed, which for OpenGL
    /// is with the drawing context current; empty for a renderer that may be freed on any thread.
    /// False when the library refuses.
    [[nodiscard]] bool
    createRenderContext(mpv_render_param* parameters,
                        std::function<void(const std::function<void()>&)> withContextCurrent);

    /// Sends a command whose outcome nobody waits for.
    void command(const std::vector<const char*>& words) const;
    /// Has the library fill the properties into the text; a reply of this number to a command
    /// brings it back.
    void expand(const char* text, std::uint64_t reply) const;
    void setFlag(const char* property, bool on) const;
    void setNumber(const char* property, double value) const;

    /// Called on the main thread for each event.
    void onEvent(std::function<void(const mpv_event&)> handler);
    /// Called on the main thread when there is something new to draw.
    void onRenderUpdate(std::function<void()> handler);

private:
    friend class MpvTeardownQueue;

    void drainEvents();
    /// Takes a picture that is ready to be drawn off the library's hands.
    void skipPicture();
    /// What is left of an instance, to be freed on any thread.
    struct Remains {
        mpv_render_context* renderContext;
        mpv_handle* handle;
    };
    /// Takes the time of the library.
    static void free(const Remains& remains);
    /// Gives away what does not have to be freed here; nothing else may be called afterwards.
    [[nodiscard]] Remains release();

    mpv_handle* m_handle;
    mpv_render_context* m_renderContext = nullptr;
    std::function<void(const std::function<void()>&)> m_withContextCurrent;
    std::function<void(const mpv_event&)> m_eventHandler;
    std::function<void()> m_renderUpdateHandler;
    std::atomic_bool m_eventsAnnounced = false;
    std::atomic_bool m_updateAnnounced = false;
};

/// Takes instances apart without making the main thread wait: it stops the playback, frees the
/// renderer where it has to be freed, and destroys the handle on a thread of its own. Owned by the
/// composition root, which waits until it is empty before it goes.
class MpvTeardownQueue final : public QObject {
    Q_OBJECT

public:
    /// Each instance holds threads, buffers and perhaps a connection to a server that hangs.
    static constexpr int maximumCount = 4;

    MpvTeardownQueue();
    ~MpvTeardownQueue() override;

    void enqueue(std::unique_ptr<MpvInstance> instance);

    /// Instances that are not gone yet.
    [[nodiscard]] int count() const { return m_count; }

    /// Ends when there are fewer than `maximumCount`, or soon after `stop` was requested.
    [[nodiscard]] QCoro::Task<> room(std::stop_token stop);
    /// Ends when there are none.
    [[nodiscard]] QCoro::Task<> empty();

Q_SIGNALS:
    void changed();

private:
    void destroyStopped(MpvInstance* instance);
    [[nodiscard]] QCoro::Task<> fewerThan(int limit, std::stop_token stop);

    std::vector<std::unique_ptr<MpvInstance>> m_stopping;
    int m_count = 0;
    QThreadPool m_destroyers;
};

} // namespace orvane
