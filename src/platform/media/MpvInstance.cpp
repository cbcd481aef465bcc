// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/media/MpvInstance.h"

#include "platform/media/EmptyCaBundle.h"
#include "platform/media/VideoOutput.h"
#include "platform/system/Memory.h"

#include <QCoroFuture>
#include <QPromise>

#include <mpv/client.h>
#include <mpv/render.h>

#include <algorithm>
#include <array>
#include <utility>

namespace orvane {

namespace {

struct Option {
    const char* name;
    const char* value;
};

// Nothing of the person's own player set-up applies here, nothing is spawned, nothing is read from
// or written to the disk, and the picture goes to a render context and nowhere else.
constexpr std::array options{
    Option{"config", "no"},
    Option{"load-scripts", "no"},
    Option{"ytdl", "no"},
    Option{"terminal", "no"},
    Option{"input-default-bindings", "no"},
    Option{"input-vo-keyboard", "no"},
    Option{"osd-level", "0"},
    Option{"osc", "no"},
    Option{"sid", "no"},
    Option{"sub-auto", "no"},
    Option{"audio-file-auto", "no"},
    Option{"cover-art-auto", "no"},
    Option{"resume-playback", "no"},
    Option{"save-position-on-quit", "no"},
    Option{"audio-client-name", "Orvane"},
    // The libraries for games that come after these are slow to say that there is no device.
    Option{"ao", "pipewire,pulse,alsa,jack"},
    // Without a sound device the end of a stream would be reported as a fault of the sound.
    Option{"audio-fallback-to-null", "yes"},
    Option{"vo", "libmpv"},
    // Pictures are drawn when they are due; the drawing thread must not be made to wait for that.
    Option{"video-timing-offset", "0"},
    Option{"network-timeout", "20"},
    // A live stream is never sought in: what was shown is not kept.
    Option{"demuxer-max-bytes", "32MiB"},
    Option{"demuxer-max-back-bytes", "0"},
    // Addresses come from yt-dlp, which is told not to check certificates either.
    Option{"tls-verify", "no"},
    // A list from the web must not name files of this machine.
    Option{"demuxer-lavf-o", "protocol_whitelist=[http,https,tcp,tls,crypto,httpproxy]"},
};

constexpr std::array softwareOptions{
    Option{"hwdec", "no"},
    // The other scaler knows nothing of these two, and takes twice as long.
    Option{"sws-allow-zimg", "no"},
    Option{"sws-scaler", "bilinear"},
    Option{"sws-fast", "yes"},
};

constexpr std::array openGLOptions{Option{"hwdec", "auto-safe"}};

template <typename Options>
void apply(mpv_handle* handle, const Options& list) {
    for (const Option& option : list)
        mpv_set_option_string(handle, option.name, option.value);
}

/// Learns from events when an instance that was stopped has come to rest: it plays nothing, and
/// nothing in it draws any more.
class Rest {
public:
    static constexpr const char* idle = "idle-active";
    static constexpr const char* drawing = "vo-configured";

    /// Whether it has, with this event at the latest.
    [[nodiscard]] bool reached(const mpv_event& event) {
        if (event.event_id == MPV_EVENT_PROPERTY_CHANGE) {
            const auto& property = *static_cast<const mpv_event_property*>(event.data);
            const std::string_view name = property.name;
            if (property.format == MPV_FORMAT_FLAG && (name == idle || name == drawing))
                (name == idle ? m_isIdle : m_isDrawing) =
                    *static_cast<const int*>(property.data) != 0;
        }
        return m_isIdle && !m_isDrawing;
    }

private:
    bool m_isIdle = false;
    bool m_isDrawing = true;
};

} // namespace

mpv_handle* MpvInstance::makeHandle(VideoOutput output) {
    mpv_handle* handle = mpv_create();
    if (handle == nullptr)
        return nullptr;
    apply(handle, options);
    mpv_set_option_string(handle, "tls-ca-file", emptyCaBundlePath().c_str());
    if (output == VideoOutput::openGL)
        apply(handle, openGLOptions);
    else
        apply(handle, softwareOptions);
    if (mpv_initialize(handle) < 0) {
        mpv_terminate_destroy(handle);
        return nullptr;
    }
    return handle;
}

MpvInstance::MpvInstance(mpv_handle* handle) : m_handle(handle) {
    mpv_set_wakeup_callback(
        m_handle,
        [](void* self) {
            auto* instance = static_cast<MpvInstance*>(self);
            if (!instance->m_eventsAnnounced.exchange(true))
                QMetaObject::invokeMethod(instance, &MpvInstance::drainEvents,
                                          Qt::QueuedConnection);
        },
        this);
}

MpvInstance::~MpvInstance() {
    if (m_handle != nullptr)
        free(release());
}

bool MpvInstance::createRenderContext(
    mpv_render_param* parameters,
    std::function<void(const std::function<void()>&)> withContextCurrent) {
    if (mpv_render_context_create(&m_renderContext, m_handle, parameters) < 0) {
        m_renderContext = nullptr;
        return false;
    }
    m_withContextCurrent = std::move(withContextCurrent);
    mpv_render_context_set_update_callback(
        m_renderContext,
        [](void* self) {
            auto* instance = static_cast<MpvInstance*>(self);
            if (!instance->m_updateAnnounced.exchange(true)) {
                QMetaObject::invokeMethod(
                    instance,
                    [instance] {
                        instance->m_updateAnnounced = false;
                        if (instance->m_renderUpdateHandler)
                            instance->m_renderUpdateHandler();
                    },
                    Qt::QueuedConnection);
            }
        },
        this);
    return true;
}

void MpvInstance::skipPicture() {
    if (m_renderContext == nullptr)
        return;
    const auto skip = [this] {
        if ((mpv_render_context_update(m_renderContext) & MPV_RENDER_UPDATE_FRAME) == 0)
            return;
        int on = 1;
        int off = 0;
        std::array parameters{mpv_render_param{MPV_RENDER_PARAM_SKIP_RENDERING, &on},
                              mpv_render_param{MPV_RENDER_PARAM_BLOCK_FOR_TARGET_TIME, &off},
                              mpv_render_param{MPV_RENDER_PARAM_INVALID, nullptr}};
        mpv_render_context_render(m_renderContext, parameters.data());
    };
    if (m_withContextCurrent)
        m_withContextCurrent(skip);
    else
        skip();
}

void MpvInstance::command(const std::vector<const char*>& words) const {
    std::vector<const char*> terminated = words;
    terminated.push_back(nullptr);
    mpv_command_async(m_handle, 0, terminated.data());
}

void MpvInstance::expand(const char* text, std::uint64_t reply) const {
    std::array<const char*, 3> words{"expand-text", text, nullptr};
    mpv_command_async(m_handle, reply, words.data());
}

void MpvInstance::setFlag(const char* property, bool on) const {
    int flag = on ? 1 : 0;
    mpv_set_property_async(m_handle, 0, property, MPV_FORMAT_FLAG, &flag);
}

void MpvInstance::setNumber(const char* property, double value) const {
    mpv_set_property_async(m_handle, 0, property, MPV_FORMAT_DOUBLE, &value);
}

void MpvInstance::onEvent(std::function<void(const mpv_event&)> handler) {
    m_eventHandler = std::move(handler);
}

void MpvInstance::onRenderUpdate(std::function<void()> handler) {
    m_renderUpdateHandler = std::move(handler);
}

void MpvInstance::drainEvents() {
    m_eventsAnnounced = false;
    while (m_handle != nullptr) {
        const mpv_event* event = mpv_wait_event(m_handle, 0);
        if (event->event_id == MPV_EVENT_NONE)
            break;
        if (m_eventHandler)
            m_eventHandler(*event);
    }
}

void MpvInstance::free(const Remains& remains) {
    if (remains.renderContext != nullptr)
        mpv_render_context_free(remains.renderContext);
    mpv_terminate_destroy(remains.handle);
}

MpvInstance::Remains MpvInstance::release() {
    if (m_renderContext != nullptr)
        mpv_render_context_set_update_callback(m_renderContext, nullptr, nullptr);
    if (m_renderContext != nullptr && m_withContextCurrent) {
        m_withContextCurrent([this] { mpv_render_context_free(m_renderContext); });
        m_renderContext = nullptr;
    }
    mpv_set_wakeup_callback(m_handle, nullptr, nullptr);
    return {.renderContext = std::exchange(m_renderContext, nullptr),
            .handle = std::exchange(m_handle, nullptr)};
}

MpvTeardownQueue::MpvTeardownQueue() {
    m_destroyers.setMaxThreadCount(maximumCount);
    // The next player is mostly far away, and an idle thread is of no use until then.
    m_destroyers.setExpiryTimeout(0);
}

MpvTeardownQueue::~MpvTeardownQueue() {
    m_destroyers.waitForDone();
}

void MpvTeardownQueue::enqueue(std::unique_ptr<MpvInstance> instance) {
    ++m_count;
    MpvInstance* stopping = instance.get();
    m_stopping.push_back(std::move(instance));

    // A renderer that is freed while the library still draws makes the caller wait for it, and
    // OpenGL's is freed here. The library in turn waits a fifth of a second for each picture that
    // nobody takes.
    stopping->onRenderUpdate([stopping] { stopping->skipPicture(); });
    stopping->skipPicture();
    stopping->onEvent([this, stopping, rest = Rest()](const mpv_event& event) mutable {
        if (rest.reached(event))
            QMetaObject::invokeMethod(
                this, [this, stopping] { destroyStopped(stopping); }, Qt::QueuedConnection);
    });
    stopping->command({"stop"});
    for (const char* property : {Rest::idle, Rest::drawing})
        mpv_observe_property(stopping->handle(), 0, property, MPV_FORMAT_FLAG);
}

void MpvTeardownQueue::destroyStopped(MpvInstance* instance) {
    const auto found = std::ranges::find(m_stopping, instance, &std::unique_ptr<MpvInstance>::get);
    if (found == m_stopping.end())
        return;
    const MpvInstance::Remains remains = instance->release();
    m_stopping.erase(found);
    m_destroyers.start([this, remains] {
        MpvInstance::free(remains);
        returnFreeMemory();
        QMetaObject::invokeMethod(
            this,
            [this] {
                --m_count;
                Q_EMIT changed();
            },
            Qt::QueuedConnection);
    });
}

QCoro::Task<> MpvTeardownQueue::room(std::stop_token stop) {
    return fewerThan(maximumCount, std::move(stop));
}

QCoro::Task<> MpvTeardownQueue::empty() {
    return fewerThan(1, std::stop_token());
}

QCoro::Task<> MpvTeardownQueue::fewerThan(int limit, std::stop_token stop) {
    if (m_count < limit || stop.stop_requested())
        co_return;
    QPromise<void> promise;
    promise.start();
    QObject context;
    connect(this, &MpvTeardownQueue::changed, &context, [this, limit, &promise] {
        if (m_count < limit)
            promise.finish();
    });
    const std::stop_callback onStop(stop, [&promise] { promise.finish(); });
    const QFuture<void> ready = promise.future();
    co_await ready;
}

} // namespace orvane
