// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/media/OpenGLVideoView.h"

#include "platform/media/MpvMediaPlayer.h"

#include <QGuiApplication>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <qguiapplication_platform.h>

#include <mpv/render.h>
#include <mpv/render_gl.h>

#include <array>

namespace orvane {

namespace {

void* functionAddress(void*, const char* name) {
    const QOpenGLContext* context = QOpenGLContext::currentContext();
    return context != nullptr ? reinterpret_cast<void*>(context->getProcAddress(name)) : nullptr;
}

void* x11Display() {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 != nullptr ? x11->display() : nullptr;
}

} // namespace

OpenGLVideoView::OpenGLVideoView(QWidget* parent) : QOpenGLWidget(parent) {}

OpenGLVideoView::~OpenGLVideoView() {
    detach();
}

void OpenGLVideoView::setPlayer(MediaPlayer* player) {
    detach();
    m_player = qobject_cast<MpvMediaPlayer*>(player);
    update();
    if (!m_player)
        return;
    connect(m_player, &MediaPlayer::closing, this, &OpenGLVideoView::detach);
    m_player->expectRenderer();
    if (isValid())
        createRenderer();
}

void OpenGLVideoView::initializeGL() {
    if (m_player && m_player->instance().renderContext() == nullptr)
        createRenderer();
}

void OpenGLVideoView::createRenderer() {
    makeCurrent();
    mpv_opengl_init_params init{functionAddress, nullptr};
    // With the display the library's hardware decoders can hand pictures over without a copy.
    std::array parameters{
        mpv_render_param{MPV_RENDER_PARAM_API_TYPE, const_cast<char*>(MPV_RENDER_API_TYPE_OPENGL)},
        mpv_render_param{MPV_RENDER_PARAM_OPENGL_INIT_PARAMS, &init},
        mpv_render_param{x11Display() != nullptr ? MPV_RENDER_PARAM_X11_DISPLAY
                                                 : MPV_RENDER_PARAM_INVALID,
                         x11Display()},
        mpv_render_param{MPV_RENDER_PARAM_INVALID, nullptr}};
    const auto withContextCurrent = [view = QPointer(this)](const std::function<void()>& free) {
        if (view)
            view->makeCurrent();
        free();
        if (view)
            view->doneCurrent();
    };
    MpvInstance& instance = m_player->instance();
    if (instance.createRenderContext(parameters.data(), withContextCurrent))
        instance.onRenderUpdate([this] { scheduleDrawing(); });
    doneCurrent();
    m_player->rendererSettled();
}

void OpenGLVideoView::detach() {
    if (!m_player)
        return;
    m_player->instance().onRenderUpdate({});
    m_player->disconnect(this);
    m_player = nullptr;
}

void OpenGLVideoView::scheduleDrawing() {
    if (!m_player || (mpv_render_context_update(m_player->instance().renderContext()) &
                      MPV_RENDER_UPDATE_FRAME) == 0)
        return;
    if (isVisible())
        update();
    else
        m_player->pictureDrawn(); // Nobody can see what is not drawn, and nobody waits for it.
}

void OpenGLVideoView::paintGL() {
    mpv_render_context* context = m_player ? m_player->instance().renderContext() : nullptr;
    if (context == nullptr) {
        QOpenGLFunctions* gl = QOpenGLContext::currentContext()->functions();
        gl->glClearColor(0, 0, 0, 1);
        gl->glClear(GL_COLOR_BUFFER_BIT);
        return;
    }
    mpv_render_frame_info info{};
    const mpv_render_param question{MPV_RENDER_PARAM_NEXT_FRAME_INFO, &info};
    mpv_render_context_get_info(context, question);

    const QSize pixels = (QSizeF(size()) * devicePixelRatioF()).toSize();
    mpv_opengl_fbo target{static_cast<int>(defaultFramebufferObject()), pixels.width(),
                          pixels.height(), 0};
    int flipY = 1;
    int blockForTargetTime = 0;
    std::array parameters{
        mpv_render_param{MPV_RENDER_PARAM_OPENGL_FBO, &target},
        mpv_render_param{MPV_RENDER_PARAM_FLIP_Y, &flipY},
        mpv_render_param{MPV_RENDER_PARAM_BLOCK_FOR_TARGET_TIME, &blockForTargetTime},
        mpv_render_param{MPV_RENDER_PARAM_INVALID, nullptr}};
    if (mpv_render_context_render(context, parameters.data()) >= 0 &&
        (info.flags & MPV_RENDER_FRAME_INFO_PRESENT) != 0)
        m_player->pictureDrawn();
}

} // namespace orvane
