// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/media/MpvInstance.h"

#include "base/Logging.h"
#include "platform/system/EmptyCaBundle.h"

#include <mpv/client.h>
#include <mpv/render.h>

#include <array>
#include <clocale>
#include <utility>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

struct Option {
    const char* name;
    const char* value;
};

// The user's own mpv configuration does not apply, no process is started, no file is read or
// written, and video goes to the render context only.
constexpr std::array options{
    Option{"config", "no"},
    Option{"load-scripts", "no"},
    // mpv's own scripts, each a thread, are for its window and keys.
    Option{"load-stats-overlay", "no"},
    Option{"load-console", "no"},
    Option{"load-osd-console", "no"},
    Option{"load-auto-profiles", "no"},
    Option{"load-select", "no"},
    Option{"load-positioning", "no"},
    Option{"load-commands", "no"},
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
    // Without a sound device the end of a stream would be reported as an audio error.
    Option{"audio-fallback-to-null", "yes"},
    Option{"vo", "libmpv"},
    // Frames are handed out when they are due, so that the main thread does not wait to draw them.
    Option{"video-timing-offset", "0"},
    Option{"network-timeout", "20"},
    // Otherwise each new connection waits for an acknowledgement before its first request, on a
    // server that delays those for 40 ms.
    Option{"stream-lavf-o", "tcp_nodelay=1"},
    // What was shown is kept only once there is a disk for it.
    Option{"demuxer-max-bytes", "32MiB"},
    Option{"demuxer-max-back-bytes", "0"},
    // The addresses come from yt-dlp, which does not check certificates either.
    Option{"tls-verify", "no"},
    // mpv's own demuxers follow edit lists, cue sheets and plain playlists wherever they lead, also
    // back to themselves.
    Option{"demuxer", "lavf"},
    Option{"audio-demuxer", "lavf"},
    // A playlist from the web must not refer to local files. One whose target duration is 0 would
    // be asked for without a pause while it stands: a list of a second is not asked for so often
    // before it counts as stalled. A second connection, for the second segment, would be opened
    // before the first segment is read.
    Option{"demuxer-lavf-o", "protocol_whitelist=[http,https,tcp,tls,crypto,httpproxy],max_reload="
                             "30,http_multiple=0"},
    // 8192 x 4320, which no channel exceeds: a small file may hold frames of any size.
    Option{"vd-lavc-o", "max_pixels=35389440"},
};

// mpv's further outputs, for games, take long to find out that there is no device.
constexpr const char* soundOutputs = "pipewire,pulse,alsa,jack";

constexpr const char* smoothScaler = "bilinear";
/// Looks at two pixels for each, which is enough for a frame that is enlarged, and saves a fifth.
constexpr const char* quickScaler = "fast-bilinear";

constexpr std::array softwareOptions{
    Option{"hwdec", "no"},
    // The software renderer cannot turn a picture, and aborts when it should: the view does it.
    Option{"vf", "format=rotate=0"},
    // zimg ignores the two options below and takes twice as long.
    Option{"sws-allow-zimg", "no"},
    Option{"sws-scaler", smoothScaler},
    Option{"sws-fast", "yes"},
};

constexpr const char* hardwareDecoders = "auto-safe";

// Versions from 0.37 on otherwise scale in several passes, which left the picture black where
// frames were late.
constexpr std::array openGLOptions{Option{"hwdec", hardwareDecoders}, Option{"profile", "fast"}};

template <typename Options>
void apply(mpv_handle* handle, const Options& list) {
    for (const Option& option : list)
        mpv_set_option_string(handle, option.name, option.value);
}

} // namespace

QString mpvApiVersion() {
    const unsigned long version = mpv_client_api_version();
    return u"%1.%2"_s.arg(version >> 16U).arg(version & 0xFFFFU);
}

void useNumericCLocale() {
    std::setlocale(LC_NUMERIC, "C");
}

mpv_handle* MpvInstance::makeHandle(VideoOutput output, Sound sound) {
    mpv_handle* handle = mpv_create();
    if (handle == nullptr) {
        qCWarning(logPlayer, "Cannot create an mpv handle");
        return nullptr;
    }
    apply(handle, options);
    mpv_set_option_string(handle, "ao", sound == Sound::on ? soundOutputs : "null");
    mpv_set_option_string(handle, "tls-ca-file", emptyCaBundlePath().c_str());
    if (output == VideoOutput::openGL)
        apply(handle, openGLOptions);
    else
        apply(handle, softwareOptions);
    if (const int error = mpv_initialize(handle); error < 0) {
        qCWarning(logPlayer, "Cannot initialize mpv: %s", mpv_error_string(error));
        mpv_terminate_destroy(handle);
        return nullptr;
    }
    return handle;
}

MpvInstance::MpvInstance(mpv_handle* handle)
    : m_handle(handle), m_eventsArrived([this] { drainEvents(); }), m_renderUpdateArrived([this] {
          if (m_renderUpdateHandler)
              m_renderUpdateHandler();
      }) {
    mpv_set_wakeup_callback(
        m_handle, [](void* call) { static_cast<DeferredCall*>(call)->schedule(); },
        &m_eventsArrived);
}

MpvInstance::~MpvInstance() {
    if (m_handle != nullptr)
        free(release());
}

bool MpvInstance::createRenderContext(mpv_render_param* parameters,
                                      VideoSource::ContextScope contextScope) {
    if (const int error = mpv_render_context_create(&m_renderContext, m_handle, parameters);
        error < 0) {
        qCWarning(logPlayer, "Cannot create a video renderer: %s", mpv_error_string(error));
        m_renderContext = nullptr;
        return false;
    }
    m_contextScope = std::move(contextScope);
    mpv_render_context_set_update_callback(
        m_renderContext, [](void* call) { static_cast<DeferredCall*>(call)->schedule(); },
        &m_renderUpdateArrived);
    return true;
}

bool MpvInstance::hasNewFrame() const {
    return m_renderContext != nullptr &&
           (mpv_render_context_update(m_renderContext) & MPV_RENDER_UPDATE_FRAME) != 0;
}

MpvInstance::Drawn MpvInstance::draw(mpv_render_param* parameters) const {
    if (m_renderContext == nullptr)
        return Drawn::nothing;
    mpv_render_frame_info info{};
    const mpv_render_param question{MPV_RENDER_PARAM_NEXT_FRAME_INFO, &info};
    mpv_render_context_get_info(m_renderContext, question);
    if (mpv_render_context_render(m_renderContext, parameters) < 0)
        return Drawn::nothing;
    return (info.flags & MPV_RENDER_FRAME_INFO_PRESENT) != 0 ? Drawn::frame : Drawn::black;
}

void MpvInstance::dropPendingFrame() {
    if (m_renderContext == nullptr)
        return;
    const auto drop = [this] {
        if (!hasNewFrame())
            return;
        int on = 1;
        int off = 0;
        std::array parameters{mpv_render_param{MPV_RENDER_PARAM_SKIP_RENDERING, &on},
                              mpv_render_param{MPV_RENDER_PARAM_BLOCK_FOR_TARGET_TIME, &off},
                              mpv_render_param{MPV_RENDER_PARAM_INVALID, nullptr}};
        mpv_render_context_render(m_renderContext, parameters.data());
    };
    if (m_contextScope)
        m_contextScope(drop);
    else
        drop();
}

void MpvInstance::setDecoding(Decoding decoding, std::optional<double> place) const {
    const bool all = decoding == Decoding::allFrames;
    command({"set", "vd-lavc-skipframe", all ? "default" : "nonkey"});
    // The decoder reads that when it is made, which a change of this option leads to. Both "no" and
    // "" are software.
    const char* usual = m_contextScope ? hardwareDecoders : "no";
    command({"set", "hwdec", all ? usual : ""});
    if (place)
        seek(*place);
}

void MpvInstance::setScaling(Scaling scaling) const {
    command({"set", "sws-scaler", scaling == Scaling::up ? quickScaler : smoothScaler});
}

void MpvInstance::seek(double place) const {
    command({"seek", QByteArray::number(place, 'f', 3).constData(), "absolute+exact"});
}

void MpvInstance::turnSoundOn() const {
    command({"set", "ao", soundOutputs});
}

void MpvInstance::command(const std::vector<const char*>& words) const {
    std::vector<const char*> terminated = words;
    terminated.push_back(nullptr);
    mpv_command_async(m_handle, 0, terminated.data());
}

void MpvInstance::requestNumber(const char* property, std::uint64_t replyId) const {
    mpv_get_property_async(m_handle, replyId, property, MPV_FORMAT_DOUBLE);
}

std::optional<double> MpvInstance::numberIn(const mpv_event& reply) {
    const auto* property = static_cast<const mpv_event_property*>(reply.data);
    if (reply.error < 0 || property->data == nullptr)
        return std::nullopt;
    return *static_cast<const double*>(property->data);
}

void MpvInstance::requestNode(const char* property, std::uint64_t replyId) const {
    mpv_get_property_async(m_handle, replyId, property, MPV_FORMAT_NODE);
}

void MpvInstance::setFlag(const char* property, bool on) const {
    int flag = on ? 1 : 0;
    mpv_set_property_async(m_handle, 0, property, MPV_FORMAT_FLAG, &flag);
}

void MpvInstance::setNumber(const char* property, double value) const {
    mpv_set_property_async(m_handle, 0, property, MPV_FORMAT_DOUBLE, &value);
}

void MpvInstance::setList(const char* property, QByteArray onlyEntry) const {
    // A node, because a text would be split at its colons.
    mpv_node entry{};
    entry.format = MPV_FORMAT_STRING;
    entry.u.string = onlyEntry.data();
    mpv_node_list entries{.num = 1, .values = &entry, .keys = nullptr};
    mpv_node list{};
    list.format = MPV_FORMAT_NODE_ARRAY;
    list.u.list = &entries;
    mpv_set_property_async(m_handle, 0, property, MPV_FORMAT_NODE, &list);
}

void MpvInstance::onEvent(std::function<void(const mpv_event&)> handler) {
    m_eventHandler = std::move(handler);
}

void MpvInstance::onRenderUpdate(std::function<void()> handler) {
    m_renderUpdateHandler = std::move(handler);
}

void MpvInstance::drainEvents() {
    while (m_handle != nullptr) {
        const mpv_event* event = mpv_wait_event(m_handle, 0);
        if (event->event_id == MPV_EVENT_NONE)
            break;
        if (m_eventHandler)
            m_eventHandler(*event);
    }
}

void MpvInstance::free(const Parts& parts) {
    if (parts.renderContext != nullptr)
        mpv_render_context_free(parts.renderContext);
    mpv_terminate_destroy(parts.handle);
}

MpvInstance::Parts MpvInstance::release() {
    if (m_renderContext != nullptr)
        mpv_render_context_set_update_callback(m_renderContext, nullptr, nullptr);
    if (m_renderContext != nullptr && m_contextScope) {
        m_contextScope([this] { mpv_render_context_free(m_renderContext); });
        m_renderContext = nullptr;
    }
    mpv_set_wakeup_callback(m_handle, nullptr, nullptr);
    return {.renderContext = std::exchange(m_renderContext, nullptr),
            .handle = std::exchange(m_handle, nullptr)};
}

} // namespace orvane
