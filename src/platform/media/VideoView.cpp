// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/media/VideoView.h"

#include "base/Logging.h"
#include "platform/media/view/OpenGLVideoView.h"
#include "platform/media/view/SoftwareVideoView.h"

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

/// Returns whether there may be a GPU. Asking OpenGL instead loads its driver, which with a
/// software rasteriser takes tens of megabytes in vain.
bool hasGraphicsDevice() {
    return !QDir(u"/dev/dri"_s).entryList({u"renderD*"_s}, QDir::System).isEmpty() ||
           QFileInfo::exists(u"/dev/nvidiactl"_s);
}

/// Returns the name of OpenGL's renderer in lower case; empty if OpenGL does not work.
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

bool isSoftwareRasteriser(const QByteArray& renderer) {
    constexpr std::array rasterisers{"llvmpipe", "softpipe", "swrast", "software rasterizer"};
    return std::ranges::any_of(rasterisers, [&](const char* r) { return renderer.contains(r); });
}

} // namespace

VideoOutput chooseVideoOutput(VideoOutput wish) {
    if (wish == VideoOutput::software || (wish == VideoOutput::automatic && !hasGraphicsDevice())) {
        qCInfo(logPlayer, "Drawing video in software");
        return VideoOutput::software;
    }
    const QByteArray renderer = openGLRenderer();
    if (wish == VideoOutput::openGL && renderer.isEmpty())
        qWarning("OpenGL does not work, drawing video in software");
    const bool works =
        !renderer.isEmpty() && (wish == VideoOutput::openGL || !isSoftwareRasteriser(renderer));
    qCInfo(logPlayer, "Drawing video %s, OpenGL renderer: \"%s\"",
           works ? "with OpenGL" : "in software", renderer.constData());
    return works ? VideoOutput::openGL : VideoOutput::software;
}

VideoView::VideoView(VideoOutput output, QWidget* parent) : QWidget(parent) {
    const auto use = [this](auto* canvas) {
        m_widget = canvas;
        m_canvas = canvas;
    };
    if (output == VideoOutput::openGL)
        use(new OpenGLVideoView(this));
    else
        use(new SoftwareVideoView(this));
}

void VideoView::setPlayer(MediaPlayer* player) {
    disconnect(m_closing);
    m_canvas->setSource(player != nullptr ? player->videoSource() : nullptr);
    if (player != nullptr)
        m_closing = connect(player, &MediaPlayer::closing, this, [this] { m_canvas->detach(); });
}

void VideoView::resizeEvent(QResizeEvent* event) {
    m_widget->setGeometry(QRect(QPoint(), event->size()));
}

} // namespace orvane
