// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/media/view/OpenGLVideoView.h"

#include <QGuiApplication>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QPointer>
#include <qguiapplication_platform.h>

#include <mpv/render.h>
#include <mpv/render_gl.h>

#include <array>
#include <utility>

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

void OpenGLVideoView::setSource(VideoSource* source) {
    detach();
    m_source = source;
    update();
    if (m_source == nullptr)
        return;
    m_source->expectRenderer();
    if (isValid())
        createRenderer();
}

void OpenGLVideoView::detach() {
    if (VideoSource* source = std::exchange(m_source, nullptr))
        source->stopUpdates();
}

void OpenGLVideoView::initializeGL() {
    if (m_source != nullptr && !m_source->hasRenderer())
        createRenderer();
}

void OpenGLVideoView::createRenderer() {
    makeCurrent();
    mpv_opengl_init_params init{functionAddress, nullptr};
    // With the display, mpv's hardware decoders can pass on frames without copying them.
    std::array parameters{
        mpv_render_param{MPV_RENDER_PARAM_API_TYPE, const_cast<char*>(MPV_RENDER_API_TYPE_OPENGL)},
        mpv_render_param{MPV_RENDER_PARAM_OPENGL_INIT_PARAMS, &init},
        mpv_render_param{x11Display() != nullptr ? MPV_RENDER_PARAM_X11_DISPLAY
                                                 : MPV_RENDER_PARAM_INVALID,
                         x11Display()},
        mpv_render_param{MPV_RENDER_PARAM_INVALID, nullptr}};
    // The player may outlive the view, and is then freed without a current context.
    const auto contextScope = [view = QPointer(this)](const std::function<void()>& function) {
        if (view)
            view->makeCurrent();
        function();
        if (view)
            view->doneCurrent();
    };
    m_source->createRenderer(parameters.data(), contextScope, [this] { scheduleDrawing(); });
    doneCurrent();
}

void OpenGLVideoView::scheduleDrawing() {
    if (m_source == nullptr || !m_source->hasNewFrame())
        return;
    if (isVisible())
        update();
    else
        m_source->frameShown();
}

void OpenGLVideoView::paintGL() {
    if (m_source == nullptr || !m_source->hasRenderer()) {
        QOpenGLFunctions* gl = QOpenGLContext::currentContext()->functions();
        gl->glClearColor(0, 0, 0, 1);
        gl->glClear(GL_COLOR_BUFFER_BIT);
        return;
    }
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
    m_source->draw(parameters.data());
}

} // namespace orvane
