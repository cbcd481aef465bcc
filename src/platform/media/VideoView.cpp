// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/media/VideoView.h"

#include "platform/media/OpenGLVideoView.h"
#include "platform/media/SoftwareVideoView.h"

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

/// What draws for OpenGL, in lower case; empty where nothing does.
QByteArray openGLRenderer() {
    QOffscreenSurface surface;
    surface.create();
    QOpenGLContext context;
    if (!context.create() || !context.makeCurrent(&surface))
        return {};
    const auto* text = context.functions()->glGetString(GL_RENDERER);
    QByteArray renderer = QByteArray(reinterpret_cast<const char*>(text)).toLower();
    context.doneCurrent();
    return renderer;
}

bool isRasteriser(const QByteArray& renderer) {
    constexpr std::array rasterisers{"llvmpipe", "softpipe", "swrast", "software rasterizer"};
    return std::ranges::any_of(rasterisers, [&](const char* r) { return renderer.contains(r); });
}

} // namespace

VideoOutput chooseVideoOutput(VideoOutput wish) {
    if (wish == VideoOutput::software || (wish == VideoOutput::automatic && !hasGraphicsDevice()))
        return VideoOutput::software;
    const QByteArray renderer = openGLRenderer();
    if (wish == VideoOutput::automatic)
        return renderer.isEmpty() || isRasteriser(renderer) ? VideoOutput::software
                                                            : VideoOutput::openGL;
    if (!renderer.isEmpty())
        return VideoOutput::openGL;
    qWarning("OpenGL does not work here, so pictures are drawn without it");
    return VideoOutput::software;
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
