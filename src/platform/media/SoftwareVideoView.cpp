// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/media/SoftwareVideoView.h"

#include "platform/media/MpvMediaPlayer.h"

#include <QPainter>

#include <mpv/render.h>

#include <array>

namespace orvane {

SoftwareVideoView::SoftwareVideoView(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_OpaquePaintEvent);
}

SoftwareVideoView::~SoftwareVideoView() {
    detach();
}

void SoftwareVideoView::setPlayer(MediaPlayer* player) {
    detach();
    m_player = qobject_cast<MpvMediaPlayer*>(player);
    if (!m_player) {
        m_image = QImage();
        update();
        return;
    }
    connect(m_player, &MediaPlayer::closing, this, &SoftwareVideoView::detach);
    m_player->expectRenderer();
    std::array parameters{
        mpv_render_param{MPV_RENDER_PARAM_API_TYPE, const_cast<char*>(MPV_RENDER_API_TYPE_SW)},
        mpv_render_param{MPV_RENDER_PARAM_INVALID, nullptr}};
    MpvInstance& instance = m_player->instance();
    if (instance.createRenderContext(parameters.data(), {}))
        instance.onRenderUpdate([this] { drawIfNew(); });
    m_player->rendererSettled();
}

void SoftwareVideoView::detach() {
    if (!m_player)
        return;
    m_player->instance().onRenderUpdate({});
    m_player->disconnect(this);
    m_player = nullptr;
}

void SoftwareVideoView::drawIfNew() {
    if (m_player &&
        (mpv_render_context_update(m_player->instance().renderContext()) & MPV_RENDER_UPDATE_FRAME))
        draw();
}

void SoftwareVideoView::draw() {
    mpv_render_context* context = m_player ? m_player->instance().renderContext() : nullptr;
    const QSize pixels = (QSizeF(size()) * devicePixelRatioF()).toSize();
    if (context == nullptr || pixels.isEmpty())
        return;

    mpv_render_frame_info info{};
    const mpv_render_param question{MPV_RENDER_PARAM_NEXT_FRAME_INFO, &info};
    mpv_render_context_get_info(context, question);

    if (m_image.size() != pixels)
        m_image = QImage(pixels, QImage::Format_RGB32);
    m_image.setDevicePixelRatio(devicePixelRatioF());
    std::array<int, 2> size{pixels.width(), pixels.height()};
    auto stride = static_cast<size_t>(m_image.bytesPerLine());
    int blockForTargetTime = 0;
    std::array parameters{
        mpv_render_param{MPV_RENDER_PARAM_SW_SIZE, size.data()},
        mpv_render_param{MPV_RENDER_PARAM_SW_FORMAT, const_cast<char*>("bgr0")},
        mpv_render_param{MPV_RENDER_PARAM_SW_STRIDE, &stride},
        mpv_render_param{MPV_RENDER_PARAM_SW_POINTER, m_image.bits()},
        mpv_render_param{MPV_RENDER_PARAM_BLOCK_FOR_TARGET_TIME, &blockForTargetTime},
        mpv_render_param{MPV_RENDER_PARAM_INVALID, nullptr}};
    if (mpv_render_context_render(context, parameters.data()) < 0)
        return;
    update();
    if ((info.flags & MPV_RENDER_FRAME_INFO_PRESENT) != 0)
        m_player->pictureDrawn();
}

void SoftwareVideoView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (m_image.isNull()) {
        painter.fillRect(rect(), Qt::black);
    } else {
        // The image has the widget's size but for the moment of a resize.
        painter.drawImage(rect(), m_image);
    }
}

void SoftwareVideoView::resizeEvent(QResizeEvent*) {
    draw();
}

} // namespace orvane
