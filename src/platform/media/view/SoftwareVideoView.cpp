// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/media/view/SoftwareVideoView.h"

#include <QPainter>

#include <mpv/render.h>

#include <array>
#include <span>
#include <utility>

namespace orvane {

SoftwareVideoView::SoftwareVideoView(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_OpaquePaintEvent);
}

SoftwareVideoView::~SoftwareVideoView() {
    detach();
}

void SoftwareVideoView::setSource(VideoSource* source) {
    detach();
    m_source = source;
    if (m_source == nullptr) {
        m_image = QImage();
        update();
        return;
    }
    m_source->expectRenderer();
    std::array parameters{
        mpv_render_param{MPV_RENDER_PARAM_API_TYPE, const_cast<char*>(MPV_RENDER_API_TYPE_SW)},
        mpv_render_param{MPV_RENDER_PARAM_INVALID, nullptr}};
    m_source->createRenderer(parameters.data(), {}, [this] {
        if (m_source->hasNewFrame())
            drawFrame();
    });
}

void SoftwareVideoView::detach() {
    if (VideoSource* source = std::exchange(m_source, nullptr))
        source->stopUpdates();
}

void SoftwareVideoView::drawFrame() {
    QSize pixels = (QSizeF(size()) * devicePixelRatioF()).toSize();
    if (m_source == nullptr || !m_source->hasRenderer() || pixels.isEmpty())
        return;

    m_rotation = m_source->rotation();
    if (isOnItsSide())
        pixels.transpose();
    if (m_image.size() != pixels)
        m_image = QImage(pixels, QImage::Format_RGB32);
    m_source->setDrawnWidth(pixels.width());
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
    if (!m_source->draw(parameters.data()))
        return;
    if (window()->testAttribute(Qt::WA_TranslucentBackground))
        fillPadding();
    update();
}

void SoftwareVideoView::fillPadding() {
    // mpv leaves the fourth byte of a pixel 0 beside the video, where a window with an alpha
    // channel would be transparent.
    constexpr QRgb opaque = 0xFF000000;
    for (int y = 0; y < m_image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(m_image.scanLine(y));
        for (QRgb& pixel : std::span(line, static_cast<size_t>(m_image.width())))
            pixel |= opaque;
    }
}

void SoftwareVideoView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (m_image.isNull()) {
        painter.fillRect(rect(), Qt::black);
        return;
    }
    // The image has the widget's size except for a moment after a resize.
    QRectF target(rect());
    if (m_rotation != 0) {
        painter.translate(target.center());
        painter.rotate(m_rotation);
        const QSizeF size = isOnItsSide() ? target.size().transposed() : target.size();
        target = QRectF(QPointF(-size.width() / 2, -size.height() / 2), size);
    }
    painter.drawImage(target, m_image);
}

void SoftwareVideoView::resizeEvent(QResizeEvent*) {
    drawFrame();
}

} // namespace orvane
