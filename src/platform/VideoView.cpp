// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/VideoView.h"

#include "platform/OpenGLVideoView.h"
#include "platform/SoftwareVideoView.h"

#include <QDir>
#include <QFileInfo>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QResizeEvent>

#include <algorithm>
#include <array>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

/// Asking OpenGL loads its driver, which costs a software rasteriser's users tens of megabytes for
/// nothing; without a device there is no need to ask.
bool hasGraphicsDevice() {
    return !QDir(u"/dev/dri"_s).entryList({u"renderD*"_s}, QDir::System).isEmpty() ||
           QFileInfo::exists(u"/dev/nvidiactl"_s);
}

bool hasHardwareOpenGL() {
    QOffscreenSurface surface;
    surface.create();
    QOpenGLContext context;
    if (!context.create() || !context.makeCurrent(&surface))
        return false;
    const auto* text = context.functions()->glGetString(GL_RENDERER);
    const QByteArray renderer = QByteArray(reinterpret_cast<const char*>(text)).toLower();
    context.doneCurrent();
    constexpr std::array rasterisers{"llvmpipe", "softpipe", "swrast", "software rasterizer"};
    return !renderer.isEmpty() &&
           std::ranges::none_of(rasterisers, [&](const char* r) { return renderer.contains(r); });
}

} // namespace

VideoOutput chooseVideoOutput(VideoOutput wish) {
    if (wish != VideoOutput::automatic)
        return wish;
    return hasGraphicsDevice() && hasHardwareOpenGL() ? VideoOutput::openGL : VideoOutput::software;
}

VideoView::VideoView(VideoOutput output, QWidget* parent) : QWidget(parent) {
    if (output == VideoOutput::openGL) {
        auto* canvas = new OpenGLVideoView(this);
        m_canvas = canvas;
        m_surface = canvas;
    } else {
        auto* canvas = new SoftwareVideoView(this);
        m_canvas = canvas;
        m_surface = canvas;
    }
}

void VideoView::setPlayer(MediaPlayer* player) {
    m_surface->setPlayer(player);
}

void VideoView::resizeEvent(QResizeEvent* event) {
    m_canvas->setGeometry(QRect(QPoint(), event->size()));
}

} // namespace orvane
